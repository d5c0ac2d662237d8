// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace chimewerk {

/// A length of time in seconds, with fractions.
using Seconds = std::chrono::duration<double>;

/// The handle of a repeating job. The queue keeps the job running whether or not a handle is held;
/// only `invalidate()` ends it. Main thread only.
class Timer {
public:
    virtual ~Timer() = default;

    /// Ends the job at once. May be called from within the job itself, and repeatedly.
    virtual void invalidate() = 0;
};

/// The program's main loop, as its parts see it: jobs run one after another on the main thread, in
/// the order in which they fall due.
class MainQueue {
public:
    using Job = std::function<void()>;

    virtual ~MainQueue() = default;

    /// Runs `job` on the main thread after the present job has returned. Any thread may call this;
    /// jobs posted from one thread run in the order of their posting. A job that is still queued
    /// when the queue is destroyed is destroyed without running.
    virtual void post(Job job) = 0;

    /// Runs `job` once, `delay` from now on a clock that never goes back, and never earlier. Main
    /// thread only.
    virtual void postAfter(Seconds delay, Job job) = 0;

    /// Runs `job` every `interval` until the handle is invalidated. The first run comes within half
    /// an interval of `interval` from now: the queue may move it so that several timers share one
    /// wake-up. Missed runs are skipped. Main thread only.
    virtual std::shared_ptr<Timer> every(Seconds interval, Job job) = 0;
};

}  // namespace chimewerk
