// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Repeats an attempt of its owner after an interval: for servers and folders whose return nothing
/// announces. Declare it as the owner's last member, so that it is destroyed first. Main thread
/// only; the queue must outlive it.
class Retry {
public:
    static constexpr Seconds kInterval{3.0};

    Retry(MainQueue& queue, Seconds interval, MainQueue::Job attempt)
        : queue_(queue), interval_(interval), attempt_(std::move(attempt)) {}

    /// Makes the next attempt after the interval. Does nothing if one is already scheduled.
    void schedule() {
        if (!std::exchange(scheduled_, true)) {
            queue_.postAfter(interval_, lifeline_.guard([this] {
                scheduled_ = false;
                attempt_();
            }));
        }
    }

private:
    MainQueue& queue_;
    const Seconds interval_;
    const MainQueue::Job attempt_;
    bool scheduled_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
