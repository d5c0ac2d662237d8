#pragma once

#include <functional>
#include <string>

#include "monitors/keyboard_monitor.h"
#include "monitors/lid_angle_monitor.h"
#include "platform/defaults_store.h"
#include "platform/file_system.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"

namespace chimewerk {

class SoundFolder;

/// What the dashboard shows and works on; all of it outlives the window.
struct DashboardDependencies {
    SoundManager& sounds;
    NotificationCenter& notifications;
    DefaultsStore& defaults;
    const FileSystem& files;
    /// Where the program's own sounds are, an absolute path; empty when there is no such folder.
    std::string resourceFolder;
    /// The files that the user has loaded.
    SoundFolder& soundFolder;
    LidAngleMonitor& lidMonitor;
    KeyboardMonitor& keyboardMonitor;
    /// Tells whether key presses can be heard.
    KeySource& keys;
    /// Tells the user how to let them be heard.
    PermissionPage& keyPermissionPage;
    /// Lets the low-battery sound fire again in this discharge.
    std::function<void()> resetBatteryLowFlag;
    /// Whether the lid-angle event can work on this machine.
    bool isAppleSilicon = false;
};

}  // namespace chimewerk
