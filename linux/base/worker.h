// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace chimewerk {

/// Runs slow jobs on one thread, one after another. It delays the end of the program only until the
/// current job notices the stop. The thread starts with the first job.
class Worker {
public:
    /// Runs on the worker thread. A long job must check the token regularly and return when a stop
    /// is requested.
    using Job = std::function<void(const std::stop_token&)>;

    Worker() = default;
    /// Discards the jobs that have not begun, requests the current one to stop and waits for it.
    ~Worker();

    /// Queues a job. Any thread.
    void post(Job job);

private:
    void run(const std::stop_token& stop);

    std::mutex lock_;
    std::condition_variable_any added_;
    std::deque<Job> jobs_;  // guarded by lock_
    std::jthread thread_;   // started under lock_
};

}  // namespace chimewerk
