// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/retry_interval.h"
#include "linux/bus/bus_link.h"
#include "linux/desktop/session_environment.h"
#include "linux/desktop/wayland_idle_time.h"

namespace chimewerk {

/// Knows how long the user has touched neither keyboard nor pointer, from the desktop: a Wayland
/// compositor, GNOME's over the bus, or KDE's screen saver in an X11 session. Connects to them with the
/// first question: most machines have no backlight. Main thread only; must not be destroyed from
/// within an answer.
class SessionIdleTime {
public:
    /// None if no desktop tells, or has had no time to count.
    using Answer = std::function<void(std::optional<std::chrono::milliseconds> idle)>;

    /// The queue must outlive the object.
    SessionIdleTime(EpollMainQueue& queue, const SessionEnvironment& environment,
                    Seconds retryInterval = kRetryInterval);

    /// Asks, and calls `answer` once, at once or after a second at the latest. A new question drops
    /// the last one. Ask once early: some desktops count from the first question.
    void ask(Answer answer);

private:
    void askNext();
    void onReply(sd_bus_message* reply);

    EpollMainQueue& queue_;
    /// Empty in an X11 session.
    const std::string waylandDisplay_;
    const Seconds retryInterval_;
    std::unique_ptr<WaylandIdleTime> wayland_;
    sd_bus* bus_ = nullptr;
    /// The next desktop to ask.
    std::size_t next_ = 0;
    Answer answer_;
    BusSlot request_;
    BusLink link_;
};

}  // namespace chimewerk
