// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>

#include "platform/lifeline.h"

namespace chimewerk {

/// Reports each application that is launched in the session. Main thread only.
class AppLaunchSource {
public:
    /// Identifies an observer.
    using Token = int;

    virtual ~AppLaunchSource() = default;

    /// Calls `onLaunch` on the main thread, once for each application launched from now on, until
    /// the observer is removed. Never calls it within this function. Applications that already run
    /// do not count. If launches cannot be detected, it is never called.
    virtual Token addObserver(std::function<void()> onLaunch) = 0;

    /// Removes the observer; it is not called again. Unknown tokens are ignored.
    virtual void removeObserver(Token token) = 0;
};

/// Reports the launch of any application. Main thread only.
class AppLaunchMonitor {
public:
    explicit AppLaunchMonitor(AppLaunchSource& source) : source_(source) {}

    /// Called when an application has been launched.
    std::function<void()> onLaunch;

    /// Starts observing. Call once before `stop()`.
    void start();
    void stop();

private:
    AppLaunchSource& source_;
    std::optional<AppLaunchSource::Token> observer_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
