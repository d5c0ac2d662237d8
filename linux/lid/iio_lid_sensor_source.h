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

/// Returns the machine's first industrial-I/O device that measures the angle of a hinge.
std::optional<IioHinge> findIioHinge();

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
