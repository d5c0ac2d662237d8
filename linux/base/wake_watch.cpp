// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/wake_watch.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>
#include <ctime>
#include <utility>

namespace chimewerk {

namespace {

/// The two clocks are read one after the other, so smaller differences are no sleep.
constexpr Seconds kNoSleep{0.1};

Seconds read(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace

Seconds MachineTimes::timeAwake() {
    return read(CLOCK_MONOTONIC);
}

Seconds MachineTimes::timeAsleep() {
    const Seconds awake = read(CLOCK_MONOTONIC);
    return read(CLOCK_BOOTTIME) - awake;
}

WakeWatch::WakeWatch(EpollMainQueue& queue, MachineTimes times, std::function<void()> onWake)
    : times_(std::move(times)),
      onWake_(std::move(onWake)),
      asleepBefore_(times_.asleep()),
      timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (timer_) {
        arm();
        watch_ = queue.watch(timer_.get(), [this] {
            // The read fails by design, and clears the descriptor's readable state.
            std::uint64_t count = 0;
            [[maybe_unused]] const auto size = ::read(timer_.get(), &count, sizeof count);
            arm();
            look();
        });
    }
}

/// Sets the timer to a date that is never reached. The kernel cancels it at each wake and when the
/// wall clock is set.
void WakeWatch::arm() {
    itimerspec never{};
    never.it_value.tv_sec = 9'000'000'000;  // In the year 2255.
    timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

void WakeWatch::look() {
    const Seconds asleep = times_.asleep();
    if (asleep - std::exchange(asleepBefore_, asleep) > kNoSleep) {
        wake_ = times_.awake();
        if (onWake_) {
            onWake_();
        }
    }
}

bool WakeWatch::wokeWithin(Seconds time) {
    look();
    return wake_ && times_.awake() - *wake_ <= time;
}

}  // namespace chimewerk
