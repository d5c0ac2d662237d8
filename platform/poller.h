// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/polled_source.h"

namespace chimewerk {

/// Runs a job of its owner at a fixed interval. Declare it as the owner's last member, so that it
/// is destroyed first. Main thread only; the queue must outlive it. The job must not destroy it.
class Poller {
public:
    explicit Poller(MainQueue& queue) : queue_(queue) {}

    /// Runs `job` every `interval`, first after about one interval, until `stop()` is called or
    /// the poller is destroyed. Call `stop()` before the next `start()`: only the last job can
    /// be stopped.
    void start(Seconds interval, MainQueue::Job job) {
        timer_ = queue_.every(interval, lifeline_.guard(std::move(job)));
    }

    /// As above, but leaves out the runs in which `source`, which the job reads, would give the
    /// same reading as before. The other runs come at the same times as without that, and a
    /// sleeping timer costs nothing.
    void start(Seconds interval, PolledSource& source, MainQueue::Job job) {
        source.onAnnouncement(lifeline_.guard([this] { wake(); }));
        start(interval, [this, &source, job = std::move(job)] {
            isNeeded_ = false;
            job();
            if (timer_ && !isNeeded_ && source.announcesChanges()) {
                timer_->sleep();
            }
        });
    }

    /// Makes the job run at the end of this interval, whatever the source says. The job itself may
    /// call this.
    void wake() {
        isNeeded_ = true;
        if (timer_) {
            timer_->wake();
        }
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
    bool isNeeded_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
