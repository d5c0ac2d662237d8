// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// The main loop on epoll: posted jobs, timers and readable descriptors. It runs by itself
/// (`run()`) or inside another loop, which watches `descriptor()` and calls `dispatch()` when it
/// becomes readable. Only `post()` may be called from any thread; everything else belongs to the
/// main thread.
class EpollMainQueue final : public MainQueue {
public:
    /// Ends the watch on destruction. Must not outlive the queue.
    class Watch {
    public:
        virtual ~Watch() = default;
    };

    /// Throws std::system_error if the system has no descriptors left.
    EpollMainQueue();
    ~EpollMainQueue() override;

    void post(Job job) override;
    void postAfter(Seconds delay, Job job) override;
    std::shared_ptr<Timer> every(Seconds interval, Job job) override;

    enum class Trigger {
        /// Again and again while the descriptor is readable or broken.
        level,
        /// At the beginning if it is, and then each time that it becomes so once more.
        edge,
    };
    /// Runs `job` on the main thread when `descriptor` is readable or broken, until the returned
    /// watch is destroyed. Destroy the watch before closing the descriptor. Returns null if the
    /// descriptor cannot be watched.
    [[nodiscard]] std::unique_ptr<Watch> watch(int descriptor, Job job,
                                               Trigger trigger = Trigger::level);

    /// Dispatches until `quit()` has been called.
    void run();
    /// Makes `run()` return after the current job.
    void quit() { quitting_ = true; }

    /// Readable when there is something to dispatch.
    int descriptor() const { return epoll_.get(); }
    /// Runs what is due now, without waiting.
    void dispatch() { dispatchWithin(0); }

private:
    class RepeatingTimer;
    class DescriptorWatch;
    using MonotonicTime = std::chrono::steady_clock::time_point;

    void dispatchWithin(int timeoutMilliseconds);
    void runPosted();
    void runDue();
    void schedule(MonotonicTime due, Job job);
    void armAlarm();
    void add(const FileDescriptor& descriptor, std::uint64_t key);

    FileDescriptor epoll_;
    FileDescriptor wakeUp_;
    FileDescriptor alarm_;
    bool quitting_ = false;
    /// Ordered by due time; jobs due at the same time keep the order in which they were scheduled.
    std::multimap<MonotonicTime, Job> delayed_;
    MonotonicTime armedFor_ = MonotonicTime::max();
    std::map<std::uint64_t, std::shared_ptr<Job>> watched_;
    std::uint64_t nextKey_;

    std::mutex postedLock_;
    std::vector<Job> posted_;  // Guarded by postedLock_; wakeUp_ is readable if there are any.
};

}  // namespace chimewerk
