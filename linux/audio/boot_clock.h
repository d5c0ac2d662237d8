// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ctime>

#include <chrono>

namespace chimewerk {

/// The time since the machine was started, which goes on while the machine or the program sleeps.
struct BootClock {
    // NOLINTBEGIN(readability-identifier-naming): the standard library looks for these names.
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<BootClock>;
    static constexpr bool is_steady = true;
    // NOLINTEND(readability-identifier-naming)

    static time_point now() {
        timespec time{};
        clock_gettime(CLOCK_BOOTTIME, &time);
        return time_point(std::chrono::seconds(time.tv_sec) +
                          std::chrono::nanoseconds(time.tv_nsec));
    }
};

}  // namespace chimewerk
