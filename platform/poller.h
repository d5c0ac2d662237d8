// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Runs a job of its owner at a fixed interval. Declare it as the owner's last member, so that it
/// is destroyed first. Main thread only; the queue must outlive it.
class Poller {
public:
    explicit Poller(MainQueue& queue) : queue_(queue) {}

    /// Runs `job` every `interval`, first after about one interval, until `stop()` is called or
    /// the poller is destroyed. Call `stop()` before the next `start()`: only the last job can
    /// be stopped.
    void start(Seconds interval, MainQueue::Job job) {
        timer_ = queue_.every(interval, lifeline_.guard(std::move(job)));
    }

    /// Stops the job. Does nothing if none is running.
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
