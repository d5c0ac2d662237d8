// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/worker.h"

#include <utility>

namespace chimewerk {

Worker::~Worker() = default;

void Worker::post(Job job) {
    {
        const std::lock_guard lock(lock_);
        jobs_.push_back(std::move(job));
        if (!thread_.joinable()) {
            thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
        }
    }
    added_.notify_one();
}

void Worker::run(const std::stop_token& stop) {
    while (true) {
        Job job;
        {
            std::unique_lock lock(lock_);
            if (!added_.wait(lock, stop, [this] { return !jobs_.empty(); }) ||
                stop.stop_requested()) {
                return;
            }
            job = std::move(jobs_.front());
            jobs_.pop_front();
        }
        job(stop);
    }
}

}  // namespace chimewerk
