// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/app_delegate.h"

#include "sound/notifications.h"

namespace chimewerk {

namespace {

/// The lid threshold in degrees if the event does not exist.
constexpr float kDefaultLidThreshold = 90.0F;

}  // namespace

AppDelegate::AppDelegate(const Dependencies& dependencies, const Sources& sources)
    : lidMonitor({.queue = dependencies.queue,
                  .clock = dependencies.clock,
                  .notifications = dependencies.notifications,
                  .sounds = dependencies.sounds,
                  .sensor = sources.lidSensor}),
      keyboardMonitor(dependencies.queue, sources.keys, sources.keyPermissionPage,
                      dependencies.sounds),
      sm_(dependencies.sounds),
      fileManagerSounds_(dependencies.fileManagerSounds),
      statusItem_(dependencies.statusItem),
      windows_(dependencies.windows),
      microphone_(sources.microphone),
      brightnessMonitor_(dependencies.queue, sources.display),
      volumeMonitor_(dependencies.queue, sources.output),
      screenshotMonitor_(dependencies.queue, sources.folders, sources.screenshotFolders),
      appLaunchMonitor_(sources.launches),
      trashMonitor_(dependencies.queue, dependencies.clock, sources.trash),
      networkMonitor_(dependencies.queue, sources.reachability),
      usbMonitor_(dependencies.queue, sources.usbDevices),
      knocks_(dependencies.queue, sources.microphone),
      power_({.queue = dependencies.queue,
              .sounds = dependencies.sounds,
              .system = sources.sleepSource,
              .powerSources = sources.powerSources,
              .restartAudio = [this] { knocks_.restartAudio(); },
              .restartKeyboardMonitor = [this] { keyboardMonitor.restart(); }}),
      menu_({.unmute = [this] { sm_.setMuted(false); },
             .openDashboard = [this] { openDashboard(); },
             .openHelp = [this] { openHelp(); },
             .setSens = [this](const MenuItem& chosen) { setSens(chosen); },
             .terminate = dependencies.terminate}),
      mutes_(dependencies.notifications.observe(
          kMuteDidChange, [this](const Notification& /*mute*/) { showMute(); })) {}

void AppDelegate::applicationDidFinishLaunching() {
    startApp();
}

void AppDelegate::startApp() {
    setupMenuBar();
    setupLidDetection();
    setupMicrophoneDetection();
    setupPowerMonitoring();
    setupBrightnessMonitoring();
    setupLidAngleMonitoring();
    setupKeyboardTap();
    setupVolumeMonitoring();
    setupScreenshotMonitoring();
    setupAppLaunchMonitoring();
    setupTrashMonitoring();
    setupNetworkMonitoring();
    setupUSBMonitoring();
}

void AppDelegate::setupMenuBar() {
    statusItem_.whenShown([this] {
        askForMicrophone();
        if (onTray_) {
            onTray_();
        }
    });
    statusItem_.show(menu_.entries(), [this] { openDashboard(); });
}

void AppDelegate::showMute() {
    menu_.showMute(sm_.isMuted());
    statusItem_.showMute(sm_.isMuted());
}

void AppDelegate::setupLidDetection() {
    power_.setupLidDetection();
}

void AppDelegate::setupMicrophoneDetection() {
    knocks_.onKnock = playing(event_ids::kSlap);
    knocks_.setupMicrophoneDetection();
}

void AppDelegate::setupPowerMonitoring() {
    power_.setupPowerMonitoring();
}

void AppDelegate::setSens(const MenuItem& chosen) {
    knocks_.slapThreshold = slapThresholdFor(chosen.title);
    menu_.markSensitivity(chosen);
}

void AppDelegate::openDashboard() {
    if (dashboard_ == nullptr) {
        dashboard_ = windows_.makeDashboard(*this);
    }
    dashboard_->showWindow();
    askForMicrophone();
}

void AppDelegate::openHelp() {
    if (helpWindow_ == nullptr) {
        helpWindow_ = windows_.makeHelpWindow(*this);
    }
    helpWindow_->showWindow();
    askForMicrophone();
}

void AppDelegate::askForMicrophone() {
    if (microphoneQuestion_ == nullptr && microphone_.isRequested()) {
        microphoneQuestion_ =
            windows_.makeMicrophoneQuestion([this](bool allowed) { allowMicrophone(allowed); });
        microphoneQuestion_->showWindow();
    }
}

bool AppDelegate::mayUseMicrophone() {
    return microphone_.authorization() == Microphone::Authorization::authorized;
}

void AppDelegate::allowMicrophone(bool allowed) {
    microphoneQuestion_ = nullptr;
    const bool isRequested = microphone_.isRequested();
    microphone_.answer(allowed);
    if (!isRequested) {
        knocks_.restartAudio();
    }
}

void AppDelegate::setEventEnabled(std::string_view eventId, bool on) {
    sm_.setEnabled(on, eventId);
    if (eventId == event_ids::kKeyPress && !on) {
        keyboardMonitor.stop();
    } else if (eventId == event_ids::kKeyPress) {
        setupKeyboardTap();
    } else if (waitsForRestart(eventId) && eventId == event_ids::kScreenshot) {
        setupScreenshotMonitoring();
    } else if (waitsForRestart(eventId)) {
        setupVolumeMonitoring();
    }
}

bool AppDelegate::waitsForRestart(std::string_view eventId) const {
    if (eventId == event_ids::kVolumeUp || eventId == event_ids::kVolumeDown) {
        return !hearsVolume_;
    }
    return eventId == event_ids::kScreenshot && !hearsScreenshots_;
}

bool AppDelegate::applicationShouldHandleReopen() {
    openDashboard();
    return true;
}

void AppDelegate::setupBrightnessMonitoring() {
    brightnessMonitor_.onUp = playing(event_ids::kBrightnessUp);
    brightnessMonitor_.onDown = playing(event_ids::kBrightnessDown);
    brightnessMonitor_.start();
}

void AppDelegate::setupLidAngleMonitoring() {
    const SoundEvent* const event = sm_.findEvent(event_ids::kLidAngle);
    lidMonitor.start(event != nullptr ? event->threshold : kDefaultLidThreshold);
}

void AppDelegate::setupKeyboardTap() {
    if (sm_.isEventEnabled(event_ids::kKeyPress)) {
        keyboardMonitor.start();
    }
}

void AppDelegate::setupVolumeMonitoring() {
    if (sm_.isEventEnabled(event_ids::kVolumeUp) || sm_.isEventEnabled(event_ids::kVolumeDown)) {
        volumeMonitor_.onUp = playing(event_ids::kVolumeUp);
        volumeMonitor_.onDown = playing(event_ids::kVolumeDown);
        volumeMonitor_.start();
        hearsVolume_ = true;
    }
}

void AppDelegate::setupScreenshotMonitoring() {
    if (sm_.isEventEnabled(event_ids::kScreenshot)) {
        screenshotMonitor_.onScreenshot = playing(event_ids::kScreenshot);
        screenshotMonitor_.start();
        hearsScreenshots_ = true;
    }
}

void AppDelegate::setupAppLaunchMonitoring() {
    appLaunchMonitor_.onLaunch = playing(event_ids::kAppLaunch);
    appLaunchMonitor_.start();
}

void AppDelegate::setupTrashMonitoring() {
    trashMonitor_.onAdd = playing(event_ids::kTrashAdd);
    trashMonitor_.onEmpty = playing(event_ids::kTrashEmpty);
    trashMonitor_.start();
    fileManagerSounds_.setFinderTrashSoundEnabled(!sm_.isAnyTrashEventEnabled());
}

void AppDelegate::setupNetworkMonitoring() {
    networkMonitor_.onConnect = playing(event_ids::kNetworkUp);
    networkMonitor_.onDisconnect = playing(event_ids::kNetworkDown);
    networkMonitor_.start();
}

void AppDelegate::setupUSBMonitoring() {
    usbMonitor_.onConnect = playing(event_ids::kUsbConnect);
    usbMonitor_.start();
}

void AppDelegate::applicationWillTerminate() {
    knocks_.stop();
    brightnessMonitor_.stop();
    keyboardMonitor.stop();
    lidMonitor.stop();
    volumeMonitor_.stop();
    screenshotMonitor_.stop();
    appLaunchMonitor_.stop();
    trashMonitor_.stop();
    networkMonitor_.stop();
    usbMonitor_.stop();
    power_.stop();
    fileManagerSounds_.setFinderTrashSoundEnabled(true);
}

std::function<void()> AppDelegate::playing(std::string_view eventId) {
    return lifeline_.guard([this, eventId] { sm_.play(eventId); });
}

}  // namespace chimewerk
