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
#include "sound/sound_manager.h"

namespace chimewerk {

/// What the dashboard shows and works on. All of it outlives the window.
struct DashboardDependencies {
    SoundManager& sounds;
    NotificationCenter& notifications;
    DefaultsStore& defaults;
    const FileSystem& files;
    /// Where the program's own sounds are, an absolute path; empty if there is no such folder.
    std::string resourceFolder;
    /// The files that the user has loaded.
    SoundFolder& soundFolder;
    /// Knows whether key presses can be heard.
    KeySource& keys;
    /// Shows the user how to allow that.
    PermissionPage& keyPermissionPage;
    /// Whether the lid-angle event can work on this machine.
    bool isAppleSilicon = false;
};

/// The parts of the program that the dashboard shows and steers. All of them outlive the window.
struct DashboardMonitors {
    LidAngleMonitor& lid;
    KeyboardMonitor& keyboard;
    /// Lets the low-battery sound play again in this discharge.
    std::function<void()> resetBatteryLowFlag;
    /// Whether this event cannot be heard before the program starts again.
    std::function<bool(std::string_view eventId)> waitsForRestart;
    /// The program's menu, for desktops without a tray.
    const Menu& menu;
    /// Whether a tray shows that menu.
    std::function<bool()> isInTray;
};

}  // namespace chimewerk
