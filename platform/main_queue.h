// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace chimewerk {

/// A length of time in seconds, with fractions.
using Seconds = std::chrono::duration<double>;

/// The handle of a repeating job. The job keeps running even when no handle is held, unless it
/// sleeps; only `invalidate()` ends it. Main thread only.
class Timer {
public:
    virtual ~Timer() = default;

    /// Leaves out the runs of the job until `wake()`. A sleeping timer causes no wake-ups. May be
    /// called from within the job, as may `wake()`.
    virtual void sleep() = 0;

    /// Ends the sleep: the next run comes when it would have come without the sleep.
    virtual void wake() = 0;

    /// Ends the job at once. May be called from within the job itself, and repeatedly.
    virtual void invalidate() = 0;
};

/// The program's main loop: runs jobs one after another on the main thread, in the order in which
/// they fall due.
class MainQueue {
public:
    using Job = std::function<void()>;

    virtual ~MainQueue() = default;

    /// Runs `job` on the main thread after the current job has returned. Any thread may call this.
    /// Jobs posted from one thread run in the order in which they were posted. A job that is still
    /// queued when the queue is destroyed is destroyed without running.
    virtual void post(Job job) = 0;

    /// Runs `job` once, after `delay` on a monotonic clock, never earlier. Main thread only.
    virtual void postAfter(Seconds delay, Job job) = 0;

    /// Runs `job` every `interval` until the handle is invalidated. The first run may come up to
    /// half an interval earlier or later, so that several timers share one wake-up. Missed runs are
    /// skipped. Main thread only.
    virtual std::shared_ptr<Timer> every(Seconds interval, Job job) = 0;
};

}  // namespace chimewerk
