// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Runs a job of its owner at a fixed interval. A member of the owner, declared last so that it
/// ends first. Main thread only; the queue outlives it.
class Poller {
public:
    explicit Poller(MainQueue& queue) : queue_(queue) {}

    /// Runs `look` every `interval`, never at once, until `stop()` is called or the owner is gone.
    /// Call `stop()` before the next `start()`: only the last one can be stopped.
    void start(Seconds interval, MainQueue::Job look) {
        timer_ = queue_.every(interval, lifeline_.guard(std::move(look)));
    }

    /// Ends the runs. Does nothing when not started.
    void stop() {
        if (timer_) {
            timer_->invalidate();
            timer_ = nullptr;
        }
    }

private:
    MainQueue& queue_;
    std::shared_ptr<Timer> timer_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
