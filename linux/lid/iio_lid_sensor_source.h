// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "linux/base/worker.h"
#include "monitors/lid_angle_monitor.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// Where to read the angle of a hinge, and in which unit.
struct IioHinge {
    /// The file with the raw value of the sensor.
    std::string rawPath;
    /// Degrees per unit of the raw value, after `offset` has been added to it.
    double degreesPerUnit;
    double offset;

    /// Converts a raw value to whole degrees; none for an angle that no lid can have.
    std::optional<float> degrees(double raw) const;
};

/// Finds the machine's first industrial-I/O device that measures the angle of a hinge.
std::optional<IioHinge> findIioHinge();

/// A lid sensor that the kernel offers as an industrial-I/O device. It has no events to wait for,
/// so it is read every 0.25 s; angles that no lid can have are skipped. A worker reads it, since
/// the kernel may have to wake the sensor and wait.
///
/// Does not notice when a device appears: `open()` looks again. When the device disappears, the
/// source closes itself and calls `onFound(false)`.
class IioLidSensorSource final : public LidSensorSource {
public:
    /// The queue outlives the source.
    explicit IioLidSensorSource(MainQueue& queue) : queue_(queue), poller_(queue) {}

    bool open(AngleHandler onAngle, FoundHandler onFound) override;
    void close() override;

private:
    void readAngle();
    void take(std::optional<double> raw);

    MainQueue& queue_;
    AngleHandler onAngle_;
    FoundHandler onFound_;
    std::optional<IioHinge> hinge_;
    bool reading_ = false;
    Poller poller_;
    Worker worker_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
