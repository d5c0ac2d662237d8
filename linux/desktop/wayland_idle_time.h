// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/retry_interval.h"

namespace chimewerk {

/// Knows how long the user has touched nothing in a Wayland session, from a compositor that tells
/// when nobody has for 5 s (KWin, sway and others). It tells only those that have asked beforehand, and wakes
/// this process then and at the return. Main thread only.
class WaylandIdleTime {
public:
    /// `display` has the form of $WAYLAND_DISPLAY. The queue must outlive the object.
    /// `retryInterval` is the time between two attempts to reach the compositor.
    WaylandIdleTime(EpollMainQueue& queue, const std::string& display,
                    Seconds retryInterval = kRetryInterval);
    ~WaylandIdleTime();
    WaylandIdleTime(const WaylandIdleTime&) = delete;
    WaylandIdleTime& operator=(const WaylandIdleTime&) = delete;

    /// Returns whether the compositor does not tell, as far as that is known.
    bool isUntold() const;
    /// Less than 5 s counts as 0. None if the compositor does not tell or has not been reached yet.
    std::optional<std::chrono::milliseconds> idle() const;

private:
    class Notice;
    std::unique_ptr<Notice> notice_;
};

}  // namespace chimewerk
