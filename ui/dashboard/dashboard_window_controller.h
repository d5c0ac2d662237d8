#pragma once

#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <set>

#include "app/windows.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"
#include "ui/dashboard/dashboard_dependencies.h"
#include "ui/dashboard/detail_panel.h"
#include "ui/dashboard/sidebar_table.h"
#include "ui/dashboard/theme_picker.h"

namespace chimewerk {

/// The window that configures the events: a sidebar with the themes and a table of all events, and beside it
/// the settings of the selected one. Keeps itself up to date, hidden or not. Main thread only.
class DashboardWindowController final : public Window {
public:
    /// Makes the window without showing it. Needs the toolkit's application; all dependencies outlive it.
    DashboardWindowController(const DashboardDependencies& dependencies,
                              DashboardMonitors monitors);

    void showWindow() override;

private:
    void buildUI();
    QWidget* buildSidebar();
    QWidget* buildTitleRow();
    void addShortcuts();
    void center();

    void tableViewSelectionDidChange();
    void sidebarToggle(int row, bool on);
    void reloadTable();

    void onLidAngle(const Notification& notification);
    void onCounterUpdated(const Notification& notification);
    void onThemeChanged();
    void showCounts();

    void toggleAppearance();
    void applyAppearance();

    const DashboardDependencies deps_;
    const DashboardMonitors monitors_;
    SoundManager& sm_;
    /// In the events; 0 or a row of the table. Changes only with the table's selection.
    std::size_t selectedIndex_ = 0;
    bool isDarkMode_;
    /// The events whose new counts do not show yet.
    std::set<std::size_t> newCounts_;
    /// Runs for a moment after counts were shown; until it ends, newer ones wait.
    QTimer countPause_;

    QWidget window_;
    // All that follows is the window's, which destroys it.
    QWidget* sidebarBgView_ = nullptr;
    QWidget* dividerView_ = nullptr;
    QPushButton* appearanceBtn_ = nullptr;
    ThemePicker* themePicker_ = nullptr;
    SidebarTable* tableView_ = nullptr;
    DetailPanel* detailPanel_ = nullptr;

    NotificationCenter::Subscription lidAngles_;
    NotificationCenter::Subscription counters_;
    NotificationCenter::Subscription themes_;
};

}  // namespace chimewerk
