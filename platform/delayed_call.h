// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Merges any number of `schedule()` calls into one call of a function, made a fixed delay after
/// the first of them. Use it to merge bursts and to space attempts that may fail. Destruction
/// cancels a pending call; as a member, declare it last, so that it is destroyed first. Main thread
/// only; the queue must outlive it.
class DelayedCall {
public:
    DelayedCall(MainQueue& queue, Seconds delay, MainQueue::Job call)
        : queue_(queue), delay_(delay), call_(std::move(call)) {}

    /// Schedules a call unless one is pending. So each `schedule()` is followed by a call.
    void schedule() {
        if (!std::exchange(isDue_, true)) {
            queue_.postAfter(delay_, lifeline_.guard([this] {
                isDue_ = false;
                call_();
            }));
        }
    }

private:
    MainQueue& queue_;
    const Seconds delay_;
    const MainQueue::Job call_;
    bool isDue_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
