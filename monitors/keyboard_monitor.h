// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/poller.h"
#include "sound/sound_manager.h"

namespace chimewerk {

/// Called by a key tap on the main thread. Neither may destroy the tap.
struct KeyTapCallbacks {
    /// A key was pressed, or repeats while it is held. `keyCode` is the program's virtual key code
    /// (Space 49, Return 36, keypad Enter 76). Modifier and media keys are not reported. Called
    /// directly from the event, without queueing.
    std::function<void(std::int64_t keyCode)> onKeyDown;
    /// The system has disabled the tap, at least in part. Enable it again to get the events that
    /// are still available; this may be done within the call.
    std::function<void()> onDisabled;
};

/// Listens to the session's keyboards without consuming keys. Destruction stops it. Main
/// thread only.
class KeyTap {
public:
    virtual ~KeyTap() = default;

    /// Switches the reports on or off. Keyboards plugged in while it is enabled are included.
    /// Repeated calls have no effect.
    virtual void setEnabled(bool enabled) = 0;
};

/// Gives access to key presses. Main thread only.
class KeySource {
public:
    virtual ~KeySource() = default;

    /// Returns whether key presses can be received now. Cheap enough for a call every second.
    virtual bool trusted() = 0;

    /// Returns a new tap, initially disabled; null if keys cannot be received.
    virtual std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) = 0;
};

/// The page that explains how to let the program receive key presses. Main thread only.
class PermissionPage {
public:
    virtual ~PermissionPage() = default;

    /// Opens the page and returns at once. Failures are silent.
    virtual void show() = 0;
};

/// Passes every key press of the session to the sound library. Without permission to listen it
/// shows the permission page and checks again every 1.5 s. Does not store which keys were pressed.
/// Main thread only.
class KeyboardMonitor {
public:
    KeyboardMonitor(MainQueue& queue, KeySource& keys, PermissionPage& permissionPage,
                    SoundManager& sounds);

    /// The tap; null while there is none.
    std::unique_ptr<KeyTap> tap;
    /// Whether key presses are received.
    bool active = false;

    /// Starts listening, or shows the permission page and waits for permission. Does nothing if it
    /// is already listening.
    void start();

    /// Stops listening and waiting.
    void stop();

    /// Starts listening again if it is permitted; otherwise stops, without showing the page
    /// or waiting.
    void restart();

    /// Plays the sound of the key with this virtual key code.
    void handle(std::int64_t keyCode);

private:
    void createTap();
    void waitForPermission();

    KeySource& keys_;
    PermissionPage& permissionPage_;
    SoundManager& sounds_;
    Poller permissionPoll_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
