// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Readings of the kernel's two monotonic clocks.
struct MachineTimes {
    /// The time since the machine started, without the time that it slept.
    std::function<Seconds()> awake = timeAwake;
    /// The time that it slept.
    std::function<Seconds()> asleep = timeAsleep;

    static Seconds timeAwake();
    static Seconds timeAsleep();
};

/// Reports how long ago the machine woke from suspension or hibernation. Asks only the kernel. Main
/// thread only.
class WakeWatch {
public:
    /// The queue must outlive the watch. Calls `onWake` on the main thread after each wake.
    WakeWatch(EpollMainQueue& queue, MachineTimes times, std::function<void()> onWake = nullptr);

    /// Returns whether the machine has woken within this time.
    bool wokeWithin(Seconds time);

private:
    void look();
    void arm();

    const MachineTimes times_;
    const std::function<void()> onWake_;
    Seconds asleepBefore_;
    std::optional<Seconds> wake_;
    FileDescriptor timer_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;  // Destroyed before the timer that it watches.
};

}  // namespace chimewerk
