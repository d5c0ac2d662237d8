#pragma once

#include <poll.h>

#include <chrono>

#include "linux/epoll_main_queue.h"

namespace chimewerk {

/// Runs the queue until `done()` holds; false when it does not within `deadline`.
template <typename Predicate>
bool runUntil(EpollMainQueue& queue, Predicate done, Seconds deadline = Seconds{10}) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!done()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return false;
        }
        pollfd ready{.fd = queue.descriptor(), .events = POLLIN, .revents = 0};
        poll(&ready, 1, static_cast<int>(left.count()));
        queue.dispatch();
    }
    return true;
}

/// Runs everything that is ready now.
inline void runReady(EpollMainQueue& queue) {
    pollfd ready{.fd = queue.descriptor(), .events = POLLIN, .revents = 0};
    while (poll(&ready, 1, 0) > 0) {
        queue.dispatch();
    }
}

/// Runs the queue for a while and counts how often it had something to do.
inline int wakeUpsWithin(EpollMainQueue& queue, Seconds span) {
    int looks = 0;
    runUntil(queue, [&] { return ++looks < 0; }, span);
    return looks - 2;  // The first look, and the one at the end.
}

}  // namespace chimewerk
