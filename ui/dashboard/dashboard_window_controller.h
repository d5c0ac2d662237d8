// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <set>

#include "app/dashboard_dependencies.h"
#include "app/windows.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"
#include "ui/dashboard/detail_panel.h"
#include "ui/dashboard/sidebar_table.h"
#include "ui/dashboard/theme_picker.h"
#include "ui/tray/program_menu.h"

namespace chimewerk {

/// The window that configures the events: a sidebar with the themes and a table of all events,
/// beside the settings of the selected event. It is kept up to date while it is hidden. Main
/// thread only.
class DashboardWindowController final : public Window {
public:
    /// Makes the window without showing it. Needs the toolkit's application.
    DashboardWindowController(const DashboardDependencies& dependencies,
                              DashboardMonitors monitors);

    void showWindow() override;

private:
    void buildUI();
    QWidget* buildSidebar();
    QWidget* buildTitleRow();
    QWidget* buildMuteRow();
    QWidget* buildMenuButton();
    void showMenuButton();
    void addShortcuts();
    void center();

    void tableViewSelectionDidChange();
    void sidebarToggle(int row, bool on);
    void reloadTable();

    void onLidAngle(const Notification& notification);
    void onCounterUpdated(const Notification& notification);
    void onThemeChanged();
    void onSettingsChanged();
    void showCounts();
    void showMute();

    void toggleAppearance();
    void applyAppearance();

    const DashboardDependencies deps_;
    const DashboardMonitors monitors_;
    SoundManager& sm_;
    /// The index of the selected event; 0 if no row is selected. Changes only with the
    /// table's selection.
    std::size_t selectedIndex_ = 0;
    bool isDarkMode_;
    ProgramMenu menu_;
    /// Indices of the events whose new counts are not shown yet.
    std::set<std::size_t> newCounts_;
    /// Runs after counts were shown; newer counts wait until it ends.
    QTimer countPause_;

    QWidget window_;
    // The window owns these widgets.
    QWidget* sidebarBgView_ = nullptr;
    QWidget* dividerView_ = nullptr;
    QPushButton* menuBtn_ = nullptr;
    QPushButton* appearanceBtn_ = nullptr;
    ThemePicker* themePicker_ = nullptr;
    SidebarTable* tableView_ = nullptr;
    QWidget* muteRow_ = nullptr;
    DetailPanel* detailPanel_ = nullptr;

    NotificationCenter::Subscription lidAngles_;
    NotificationCenter::Subscription counters_;
    NotificationCenter::Subscription themes_;
    NotificationCenter::Subscription settings_;
    NotificationCenter::Subscription contrast_;
    NotificationCenter::Subscription mutes_;
};

}  // namespace chimewerk
