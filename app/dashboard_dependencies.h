// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "app/menu.h"
#include "monitors/keyboard_monitor.h"
#include "monitors/lid_angle_monitor.h"
#include "platform/defaults_store.h"
#include "platform/file_system.h"
#include "platform/notification_center.h"
#include "platform/sound_folder.h"
#include "platform/source_report.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// The objects that the dashboard shows and changes. All must outlive the window.
struct DashboardDependencies {
    SoundManager& sounds;
    NotificationCenter& notifications;
    DefaultsStore& defaults;
    const FileSystem& files;
    /// The absolute path of the folder with the program's own sounds; empty if there is no
    /// such folder.
    std::string resourceFolder;
    /// The files that the user has loaded.
    SoundFolder& soundFolder;
    /// Whether key presses can be received.
    KeySource& keys;
    /// Explains how to permit that.
    PermissionPage& keyPermissionPage;
    /// Whether the lid-angle event can work on this machine.
    bool isAppleSilicon = false;
    /// Returns the report of the event's source. May be empty.
    std::function<SourceReport(std::string_view eventId)> report = {};
};

/// The parts of the program that the dashboard shows and controls. All must outlive the window.
struct DashboardMonitors {
    LidAngleMonitor& lid;
    KeyboardMonitor& keyboard;
    /// Lets the low-battery sound play again before the next charge.
    std::function<void()> resetBatteryLowFlag;
    /// Whether the user allows the microphone, and how the user changes that.
    std::function<bool()> mayUseMicrophone;
    std::function<void(bool allowed)> allowMicrophone;
    /// Whether this event cannot be heard before the program starts again.
    std::function<bool(std::string_view eventId)> waitsForRestart;
    /// The program's menu, for desktops without a tray.
    const Menu& menu;
    /// Whether a tray shows that menu.
    std::function<bool()> isInTray;
    /// Calls the job when that becomes true.
    std::function<void(std::function<void()> job)> whenInTray;
};

}  // namespace chimewerk
