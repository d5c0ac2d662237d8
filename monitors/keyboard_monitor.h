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

/// What a key tap reports, on the main thread. The tap must not be destroyed from within
/// either call.
struct KeyTapCallbacks {
    /// A key went down, or repeats while it is held. `keyCode` is the program's virtual key code
    /// (Space 49, Return 36, keypad Enter 76). Modifier and media keys are not reported. Called
    /// straight from the event, without queueing.
    std::function<void(std::int64_t keyCode)> onKeyDown;
    /// The system has disabled the tap in part or in whole. Enable it again, if need be from within
    /// this call, to hear what can be heard.
    std::function<void()> onDisabled;
};

/// Listens to the keyboards of the session. It only listens: the window with the focus gets every
/// key as before. Ends when it is destroyed. Main thread only.
class KeyTap {
public:
    virtual ~KeyTap() = default;

    /// Switches the reports on or off. Keyboards that are plugged in while it is enabled are heard
    /// too. Repeated calls do no harm.
    virtual void setEnabled(bool enabled) = 0;
};

/// Where key presses are heard. Main thread only.
class KeySource {
public:
    virtual ~KeySource() = default;

    /// Whether key presses can really be heard now. Cheap enough to be asked every second or so.
    virtual bool trusted() = 0;

    /// A tap that is not enabled yet; null when the keys cannot be heard.
    virtual std::unique_ptr<KeyTap> createTap(KeyTapCallbacks callbacks) = 0;
};

/// The page that tells the user how to let the program hear the keys. Main thread only.
class PermissionPage {
public:
    virtual ~PermissionPage() = default;

    /// Brings the page up and returns at once. Failures are silent.
    virtual void show() = 0;
};

/// Hands every key press of the session to the sound library. Without the permission to listen it
/// shows the user where to give it and polls for it every 1.5 s. Which key was pressed is passed on
/// and kept nowhere. Main thread only.
class KeyboardMonitor {
public:
    KeyboardMonitor(MainQueue& queue, KeySource& keys, PermissionPage& permissionPage,
                    SoundManager& sounds);

    /// The tap, while there is one.
    std::unique_ptr<KeyTap> tap;
    /// Whether key presses are being heard.
    bool active = false;

    /// Begins to listen, or shows the permission page and waits for the permission. Nothing when
    /// already listening.
    void start();

    /// Ends the listening and the waiting.
    void stop();

    /// Listens anew if that is permitted now; if not, ends up stopped, without a page and
    /// without waiting.
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
