// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <utility>

#include "platform/clock.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// A main queue in virtual time: jobs run only within `runPosted()` and `advance()`. Also serves as
/// the wall clock.
class VirtualMainQueue final : public MainQueue, public Clock {
public:
    void post(Job job) override { jobs_.emplace(now_, std::move(job)); }
    void postAfter(Seconds delay, Job job) override { jobs_.emplace(now_ + delay, std::move(job)); }
    std::shared_ptr<Timer> every(Seconds interval, Job job) override {
        auto timer = std::make_shared<VirtualTimer>();
        repeat(timer, interval, std::make_shared<Job>(std::move(job)));
        return timer;
    }

    WallTime now() const override { return now_ + wallClockOffset_; }

    /// Sets the wall clock back; jobs fall due as before.
    void setClockBack(Seconds by) { wallClockOffset_ -= by; }

    /// Runs the jobs that are due now.
    void runPosted() { advance(Seconds{0}); }

    /// Advances the time and runs each job when it falls due.
    void advance(Seconds span) {
        const WallTime end = now_ + span;
        // Absorbs rounding, so that ten steps of 0.1 s reach a job that is due after 1 s.
        constexpr Seconds kSlack{1e-7};
        while (!jobs_.empty() && jobs_.begin()->first <= end + kSlack) {
            auto due = jobs_.extract(jobs_.begin());
            now_ = std::max(now_, due.key());
            due.mapped()();
        }
        now_ = std::max(now_, end);
    }

    /// Returns the number of queued jobs, timers included.
    std::size_t queued() const { return jobs_.size(); }

private:
    struct VirtualTimer final : Timer {
        bool valid = true;
        bool awake = true;
        void invalidate() override { valid = false; }
        void sleep() override { awake = false; }
        void wake() override { awake = true; }
    };

    void repeat(const std::shared_ptr<VirtualTimer>& timer, Seconds interval,
                const std::shared_ptr<Job>& job) {
        postAfter(interval, [this, timer, interval, job] {
            if (timer->valid && timer->awake) {
                (*job)();
            }
            if (timer->valid) {
                repeat(timer, interval, job);
            }
        });
    }

    Seconds wallClockOffset_{0};
    WallTime now_{Seconds{1'700'000'000}};
    std::multimap<WallTime, Job> jobs_;
};

}  // namespace chimewerk
