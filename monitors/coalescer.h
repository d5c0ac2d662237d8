// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Merges a burst of signals into one call, made one latency after the first signal. A later signal
/// leads to another call, so a call always follows the last signal. Destruction cancels a pending
/// call. Main thread only.
class Coalescer {
public:
    Coalescer(MainQueue& queue, Seconds latency, std::function<void()> call)
        : queue_(queue), latency_(latency), call_(std::move(call)) {}

    void signal() {
        if (!std::exchange(waiting_, true)) {
            queue_.postAfter(latency_, lifeline_.guard([this] {
                waiting_ = false;
                call_();
            }));
        }
    }

private:
    MainQueue& queue_;
    const Seconds latency_;
    const std::function<void()> call_;
    bool waiting_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
