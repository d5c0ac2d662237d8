// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "linux/base/worker.h"
#include "monitors/lid_angle_monitor.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// The location and unit of a hinge's angle.
struct IioHinge {
    /// The file with the sensor's raw value.
    std::string rawPath;
    /// Degrees per unit of the raw value, after `offset` has been added.
    double degreesPerUnit;
    double offset;

    /// Converts a raw value to whole degrees; none if no lid can have that angle.
    std::optional<float> degrees(double raw) const;
};

/// A way to read the angle of the lid.
struct IioAngle {
    /// Returns the angle in whole degrees, 0 to 360; none if there is none to be had now. Any
    /// thread. May block while the kernel queries the device.
    std::function<std::optional<float>()> read;
    /// A file that vanishes with the device.
    std::string path;
};

/// An acceleration: x to the right, y upwards or to the back, z out of the screen or keyboard.
using Acceleration = std::array<double, 3>;

/// Returns the angle between lid and base, in degrees, 0 to 349, from the accelerations of gravity
/// that they measure, in m/s²; none while the machine is moved or stands on its side, and near
/// 360°.
std::optional<float> lidAngleOf(const Acceleration& display, const Acceleration& base);

/// Finds the machine's hinge sensor; without one, a pair of accelerometers in its lid and its base.
std::optional<IioAngle> findIioAngle();

/// A lid sensor that the kernel provides as an industrial-I/O device. It has no events, so it is
/// read every 0.25 s; impossible angles are skipped. A worker reads it, because the kernel may have
/// to wake the sensor and wait.
///
/// Does not notice new devices; call `open()` again to search. When the device disappears, the
/// source closes itself and calls `onFound(false)`.
class IioLidSensorSource final : public LidSensorSource {
public:
    /// The queue must outlive the source.
    explicit IioLidSensorSource(MainQueue& queue) : queue_(queue), poller_(queue) {}

    bool open(AngleHandler onAngle, FoundHandler onFound) override;
    void close() override;
    std::string_view name() const override { return "hinge sensor, industrial I/O"; }

private:
    void readAngle();
    void take(std::optional<float> degrees);

    MainQueue& queue_;
    AngleHandler onAngle_;
    FoundHandler onFound_;
    std::optional<IioAngle> angle_;
    bool reading_ = false;
    Poller poller_;
    Worker worker_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
