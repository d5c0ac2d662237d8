// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/brightness_monitor.h"

namespace chimewerk {

namespace {

constexpr Seconds kPollInterval{0.25};
constexpr float kMinDelta = 0.03F;

}  // namespace

BrightnessMonitor::BrightnessMonitor(MainQueue& queue, BrightnessSource& display)
    : display_(display), poller_(queue) {}

void BrightnessMonitor::start() {
    last_ = display_.brightness();
    poller_.start(kPollInterval, display_, [this] { poll(); });
}

void BrightnessMonitor::poll() {
    const std::optional<float> level = display_.brightness();
    if (!level) {
        return;
    }
    if (!last_) {
        last_ = level;
        return;
    }
    const float change = *level - *last_;
    if (change > kMinDelta) {
        last_ = level;
        if (onUp) {
            onUp();
        }
    } else if (change < -kMinDelta) {
        last_ = level;
        if (onDown) {
            onDown();
        }
    }
}

}  // namespace chimewerk
