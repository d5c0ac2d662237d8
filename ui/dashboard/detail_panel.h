// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "app/dashboard_dependencies.h"
#include "ui/dashboard/angle_box.h"
#include "ui/dashboard/detail_header.h"
#include "ui/dashboard/labeled_slider.h"
#include "ui/dashboard/note_boxes.h"
#include "ui/dashboard/sound_box.h"
#include "ui/dashboard/sound_loader.h"
#include "ui/rules/detail_view.h"

namespace chimewerk {

/// The right part of the dashboard: the settings of the selected event, in boxes below one another.
class DetailPanel final : public QWidget {
public:
    /// `selectedIndex` returns the index of the shown event in the sound library.
    /// `onSettingsChanged` is called when the user has changed something that the list of events
    /// shows too; it must update the list and keep the selection. `dependencies` and `monitors`
    /// must outlive the panel.
    DetailPanel(const DashboardDependencies& dependencies, const DashboardMonitors& monitors,
                std::function<std::size_t()> selectedIndex,
                std::function<void()> onSettingsChanged);

    /// Shows the current state of the selected event; nothing if there is no such event.
    void refreshDetail();
    /// Shows how often the selected event has been triggered.
    void showCounter(std::int64_t triggerCount) { header_->showCounter(triggerCount); }
    /// Sets the lid's angle in degrees. Any event may be selected.
    void setCurrentAngle(float degrees) { thresholdBox_->setCurrentAngle(degrees); }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    class Veil;

    /// State that changes without a notification.
    struct Watched {
        bool trusted;
        bool tapActive;
        bool sensorFound;
        bool mayUseMicrophone;
        bool operator==(const Watched&) const = default;
    };

    void detailToggle();
    void changeMicrophone();
    void loadSound();
    void previewSound();
    void removeSound();
    void volumeChanged(float volume);
    void thresholdChanged(float degrees);
    void batteryThreshChanged(float percent);

    const SoundEvent* selectedEvent() const;
    Watched watched() const;
    std::string missingHardware(const std::string& eventId) const;
    void watch();
    void display(const DetailView& view);
    void displayBox(const DetailView& view);
    /// Returns the box that only some events have; null for the other events.
    PanelBox* shownBox() const;
    void alignTexts();
    void arrange();
    int arrange(int gaugeHeight);

    const DashboardDependencies& deps_;
    const DashboardMonitors& monitors_;
    SoundManager& sm_;
    const std::function<std::size_t()> selectedIndex_;
    const std::function<void()> onSettingsChanged_;
    SoundLoader loader_;
    QTimer watch_;
    Watched shown_{};
    DetailBox box_ = DetailBox::none;

    // In the order of keyboard navigation.
    DetailHeader* const header_;
    SoundBox* const soundBox_;
    LabeledSlider* const volumeSlider_;
    TriggerBox* const triggerBox_;
    AngleBox* const thresholdBox_;
    PermissionBox* const permissionBox_;
    PermissionBox* const microphoneBox_;
    LockBox* const intelLockBox_;
    LabeledSlider* const batteryThreshBox_;
    Veil* const veil_;
};

}  // namespace chimewerk
