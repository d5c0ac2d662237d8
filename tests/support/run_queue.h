// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <poll.h>

#include <chrono>

#include "linux/base/epoll_main_queue.h"

namespace chimewerk {

/// Waits up to `most` until the queue has something to run, and runs it. Returns false if there
/// was nothing.
inline bool runOnce(EpollMainQueue& queue, std::chrono::milliseconds most) {
    pollfd ready{.fd = queue.descriptor(), .events = POLLIN, .revents = 0};
    const bool any = poll(&ready, 1, static_cast<int>(most.count())) > 0;
    if (any) {
        queue.dispatch();
    }
    return any;
}

/// Runs the queue until `done()` holds. Returns false if it does not within `deadline`. The
/// condition may also change outside the queue.
template <typename Predicate>
bool runUntil(EpollMainQueue& queue, Predicate done, Seconds deadline = Seconds{10}) {
    constexpr std::chrono::milliseconds kLook{10};
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        runOnce(queue, kLook);
    }
    return true;
}

/// Runs everything that is ready now.
inline void runReady(EpollMainQueue& queue) {
    while (runOnce(queue, std::chrono::milliseconds(0))) {
    }
}

/// Runs the queue for a while and returns how often it woke up.
inline int wakeUpsWithin(EpollMainQueue& queue, Seconds span) {
    const auto end = std::chrono::steady_clock::now() + span;
    int wakeUps = 0;
    while (true) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return wakeUps;
        }
        wakeUps += runOnce(queue, left) ? 1 : 0;
    }
}

}  // namespace chimewerk
