// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>

#include "platform/main_queue.h"

namespace chimewerk {

/// A moment of the wall clock, in seconds since 1970-01-01 UTC, with fractions.
using WallTime = std::chrono::time_point<std::chrono::system_clock, Seconds>;

/// Earlier than any event; the time since then is longer than any rule requires.
inline constexpr WallTime kDistantPast{Seconds{-62135769600.0}};

/// The wall clock. Any thread.
class Clock {
public:
    virtual ~Clock() = default;

    virtual WallTime now() const = 0;
};

/// Returns whether more than `span` has passed since `start`. It also has if the clock has been set
/// back to before `start`.
inline bool hasPassed(Seconds span, WallTime start, WallTime now) {
    return now - start > span || now < start;
}

}  // namespace chimewerk
