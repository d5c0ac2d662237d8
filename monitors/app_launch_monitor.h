// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>

#include "platform/lifeline.h"

namespace chimewerk {

/// Reports each application of the session that is launched. Main thread only.
class AppLaunchSource {
public:
    /// Names one observer.
    using Token = int;

    virtual ~AppLaunchSource() = default;

    /// Calls `onLaunch` on the main thread, later, once for each application that is launched from
    /// now on, until the observer is removed. What runs already does not count. Where launches
    /// cannot be seen, it never calls.
    virtual Token addObserver(std::function<void()> onLaunch) = 0;

    /// Ends the observer's calls at once. Unknown tokens are ignored.
    virtual void removeObserver(Token token) = 0;
};

/// Reports any application being launched. Main thread only.
class AppLaunchMonitor {
public:
    explicit AppLaunchMonitor(AppLaunchSource& source) : source_(source) {}

    /// An application has been launched.
    std::function<void()> onLaunch;

    /// Begins to observe. Call it once before `stop()`.
    void start();
    void stop();

private:
    AppLaunchSource& source_;
    std::optional<AppLaunchSource::Token> observer_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
