#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace chimewerk {

/// One thread that does slow work, job after job, and never holds up the end of the program for longer than
/// its present job takes to notice the stop. The thread starts with the first job.
class Worker {
public:
    /// Runs on the worker's thread. A job that may take long looks at the token now and then and returns when
    /// a stop is requested.
    using Job = std::function<void(const std::stop_token&)>;

    Worker() = default;
    /// Drops the jobs that have not begun, asks the present one to stop and waits for it.
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
