// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/key_repeat.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <utility>

namespace chimewerk {

namespace {

timespec toTimespec(std::chrono::milliseconds span) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(span);
    return {.tv_sec = static_cast<time_t>(seconds.count()),
            .tv_nsec = static_cast<long>(std::chrono::nanoseconds(span - seconds).count())};
}

}  // namespace

KeyRepeat::KeyRepeat(EpollMainQueue& queue, std::function<void(std::uint8_t)> onRepeat)
    : onRepeat_(std::move(onRepeat)),
      timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      watch_(queue.watch(timer_.get(), [this] {
          std::uint64_t expirations = 0;
          if (read(timer_.get(), &expirations, sizeof expirations) > 0) {
              onRepeat_(held_);
          }
      })) {}

void KeyRepeat::setSettings(const Settings& settings) {
    if (settings_ != settings) {
        settings_ = settings;
        stop();
    }
}

void KeyRepeat::press(std::uint8_t key) {
    const bool repeats = (settings_.keys[key / 8] >> (key % 8) & 1) != 0;
    if (repeats && settings_.delay.count() > 0) {
        held_ = key;
        setTimer(settings_.delay, settings_.interval);
    }
}

void KeyRepeat::release(std::uint8_t key) {
    if (held_ == key) {
        stop();
    }
}

void KeyRepeat::stop() {
    if (std::exchange(held_, 0) != 0) {
        setTimer({}, {});
    }
}

void KeyRepeat::setTimer(std::chrono::milliseconds delay, std::chrono::milliseconds interval) {
    const itimerspec when{.it_interval = toTimespec(interval), .it_value = toTimespec(delay)};
    timerfd_settime(timer_.get(), 0, &when, nullptr);
}

}  // namespace chimewerk
