// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <utility>

#include "monitors/lid_angle_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A lid that the test moves.
class FakeLidSensorSource final : public LidSensorSource, public Noting {
public:
    /// Whether a sensor is present when the source is opened.
    bool present = true;

    bool open(AngleHandler onAngle, FoundHandler onFound) override {
        note("lid");
        onAngle_ = std::move(onAngle);
        onFound_ = std::move(onFound);
        return present;
    }
    void close() override {
        note("-lid");
        onAngle_ = nullptr;
        onFound_ = nullptr;
    }

    bool isOpen() const { return onAngle_ != nullptr; }
    /// Moves the lid to this angle, in degrees.
    void moveTo(float degrees) {
        if (onAngle_) {
            onAngle_(degrees);
        }
    }
    /// Makes the sensor appear or disappear while the source is open.
    void setPresent(bool now) {
        present = now;
        if (onFound_) {
            onFound_(now);
        }
    }

private:
    AngleHandler onAngle_;
    FoundHandler onFound_;
};

}  // namespace chimewerk
