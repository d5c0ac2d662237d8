// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/microphone_permission.h"
#include "app/status_item.h"
#include "app/status_menu.h"
#include "app/windows.h"
#include "monitors/app_launch_monitor.h"
#include "monitors/brightness_monitor.h"
#include "monitors/keyboard_monitor.h"
#include "monitors/knock_detector.h"
#include "monitors/lid_angle_monitor.h"
#include "monitors/network_monitor.h"
#include "monitors/power_events.h"
#include "monitors/screenshot_monitor.h"
#include "monitors/trash_monitor.h"
#include "monitors/usb_monitor.h"
#include "monitors/volume_monitor.h"
#include "platform/clock.h"
#include "platform/file_manager_sounds.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// The running program: owns the tray menu, the windows and the monitors, connects each monitor to
/// the sound library, and starts and stops them in a fixed order. All monitors exist as long as the
/// delegate, started or not. Main thread only.
class AppDelegate {
public:
    /// The monitors' sources; they must outlive the delegate.
    struct Sources {
        LidSensorSource& lidSensor;
        BrightnessSource& display;
        KeySource& keys;
        PermissionPage& keyPermissionPage;
        OutputVolumeSource& output;
        FolderSource& folders;
        std::vector<ScreenshotFolder> screenshotFolders;
        AppLaunchSource& launches;
        TrashSource& trash;
        ReachabilitySource& reachability;
        UsbArrivalSource& usbDevices;
        MicrophonePermission& microphone;
        SleepSource& sleepSource;
        PowerSources& powerSources;
    };

    /// The delegate's other dependencies; they must outlive it.
    struct Dependencies {
        MainQueue& queue;
        const Clock& clock;
        NotificationCenter& notifications;
        SoundManager& sounds;
        FileManagerSounds& fileManagerSounds;
        StatusItem& statusItem;
        WindowFactory& windows;
        /// Ends the main loop, soon.
        std::function<void()> terminate;
    };

    AppDelegate(const Dependencies& dependencies, const Sources& sources);

    /// Starts the program. Called once, when the main loop is about to run.
    void applicationDidFinishLaunching();

    /// Stops everything, started or not. Called once, when the main loop has ended.
    void applicationWillTerminate();

    /// Opens the dashboard. Called when the program is launched again or activated.
    bool applicationShouldHandleReopen();

    /// Shows the window and brings it to the front.
    void openDashboard();
    void openHelp();

    /// Switches the event on or off, stores that, and listens for it at once. Does nothing if there
    /// is no such event.
    void setEventEnabled(std::string_view eventId, bool on);

    /// Lets the low-battery sound play again before the next charge.
    void resetBatteryLowFlag() { power_.resetBatteryLowFlag(); }

    /// The menu of the tray icon.
    const Menu& menu() const { return menu_.entries(); }
    /// Whether there is a tray for the icon, and so for the menu.
    bool isInTray() const { return statusItem_.isShown(); }
    void whenInTray(std::function<void()> job) { onTray_ = std::move(job); }

    bool mayUseMicrophone();
    /// Stores the user's answer, and begins or stops to listen for knocks.
    void allowMicrophone(bool allowed);

    /// Whether this event cannot be heard before the next start: none of its kind was on at this
    /// one.
    bool waitsForRestart(std::string_view eventId) const;

    LidAngleMonitor lidMonitor;
    KeyboardMonitor keyboardMonitor;

private:
    void startApp();
    void setupMenuBar();
    void showMute();
    void askForMicrophone();
    void setSens(const MenuItem& chosen);
    void setupLidDetection();
    void setupMicrophoneDetection();
    void setupPowerMonitoring();
    void setupBrightnessMonitoring();
    void setupLidAngleMonitoring();
    void setupKeyboardTap();
    void setupVolumeMonitoring();
    void setupScreenshotMonitoring();
    void setupAppLaunchMonitoring();
    void setupTrashMonitoring();
    void setupNetworkMonitoring();
    void setupUSBMonitoring();

    /// Returns a callback that plays this event, one of `event_ids`. It does nothing once the
    /// delegate is gone.
    std::function<void()> playing(std::string_view eventId);

    SoundManager& sm_;
    FileManagerSounds& fileManagerSounds_;
    StatusItem& statusItem_;
    WindowFactory& windows_;
    MicrophonePermission& microphone_;
    std::function<void()> onTray_;
    BrightnessMonitor brightnessMonitor_;
    VolumeMonitor volumeMonitor_;
    ScreenshotMonitor screenshotMonitor_;
    AppLaunchMonitor appLaunchMonitor_;
    TrashMonitor trashMonitor_;
    NetworkMonitor networkMonitor_;
    USBMonitor usbMonitor_;
    KnockDetector knocks_;
    PowerEvents power_;
    StatusMenu menu_;
    NotificationCenter::Subscription mutes_;
    bool hearsVolume_ = false;
    bool hearsScreenshots_ = false;
    /// Made when first opened. Declared after the monitors, which they use.
    std::unique_ptr<Window> dashboard_;
    std::unique_ptr<Window> helpWindow_;
    /// After the windows, of which it may be a part. Made once, when there is a place to ask.
    std::unique_ptr<Window> microphoneQuestion_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
