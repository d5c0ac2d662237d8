// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/user_brightness_source.h"

#include <utility>

namespace chimewerk {

namespace {

/// A desktop reacts faster to a key; the shortest delay before it dims is longer.
constexpr std::chrono::seconds kAway{5};

}  // namespace

UserBrightnessSource::UserBrightnessSource(BrightnessSource& display, AskIdleTime askIdleTime)
    : display_(display), askIdleTime_(std::move(askIdleTime)) {
    display_.onAnnouncement([this] { announce(); });
}

std::optional<float> UserBrightnessSource::brightness() {
    const std::optional<float> before = std::exchange(reading_, display_.brightness());
    if (!reading_ || !told_) {
        told_ = reading_;
        if (reading_) {
            // The desktop may count only from the first question.
            askIdleTime_([](IdleTime) {});
        }
    } else if (reading_ != before) {
        askIdleTime_([this](IdleTime idle) { judge(idle); });
    }
    return told_;
}

void UserBrightnessSource::judge(IdleTime idle) {
    const bool isUsers = !idle || *idle < kAway;
    if (isUsers && told_ != reading_) {
        told_ = reading_;
        announce();
    }
}

}  // namespace chimewerk
