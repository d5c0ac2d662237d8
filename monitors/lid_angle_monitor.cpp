// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/lid_angle_monitor.h"

#include <utility>

#include "sound/notifications.h"

namespace chimewerk {

namespace {

constexpr Seconds kCooldown{0.8};

}  // namespace

void LidAngleMonitor::start(float threshold) {
    angleThreshold = threshold;
    sensorFound = deps_.sensor.open(lifeline_.guard([this](float angle) {
        deps_.queue.post(lifeline_.guard([this, angle] { processAngle(angle); }));
    }),
                                    lifeline_.guard([this](bool found) { sensorFound = found; }));
}

void LidAngleMonitor::processAngle(float angle) {
    deps_.notifications.post({.name = lidAngleDidChange, .userInfo = {{"angle", angle}}});
    const float previous = std::exchange(lastAngle_, angle);
    // A crossing within the cooldown is dropped, not remembered.
    if (previous < 0 || !hasPassed(kCooldown, lastTrigger_, deps_.clock.now())) {
        return;
    }
    const bool rising = previous < angleThreshold && angle >= angleThreshold;
    const bool falling = previous > angleThreshold && angle <= angleThreshold;
    if (rising || falling) {
        lastTrigger_ = deps_.clock.now();
        deps_.sounds.play(event_ids::kLidAngle);
    }
}

}  // namespace chimewerk
