// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Looks again, after an interval, for something that nothing announces: a server, a folder. A
/// member of the owner, declared last so that it ends first. Main thread only; the queue
/// outlives it.
class Retry {
public:
    static constexpr Seconds kInterval{3.0};

    Retry(MainQueue& queue, Seconds interval, MainQueue::Job look)
        : queue_(queue), interval_(interval), look_(std::move(look)) {}

    /// Runs `look` once, after the interval. Does nothing while a look is already due.
    void later() {
        if (!std::exchange(due_, true)) {
            queue_.postAfter(interval_, lifeline_.guard([this] {
                due_ = false;
                look_();
            }));
        }
    }

private:
    MainQueue& queue_;
    const Seconds interval_;
    const MainQueue::Job look_;
    bool due_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
