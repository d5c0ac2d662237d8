// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

#include "linux/lid/hid_report_descriptor.h"

namespace chimewerk {

/// Returns the lid sensor among the collections of a HID device, if there is one. Any bytes of any
/// length may be passed.
std::optional<HidCollection> findLidSensor(std::span<const std::uint8_t> reportDescriptor);

/// The feature reports of a HID device. Each begins with its identifier (0 if the device does not
/// number its reports).
class HidFeatureReports {
public:
    virtual ~HidFeatureReports() = default;

    /// Returns the whole report; empty if it cannot be read. May block on the device.
    virtual std::vector<std::uint8_t> read(std::uint8_t reportId) = 0;

    /// Writes the report; failures are ignored. May block on the device.
    virtual void write(const std::vector<std::uint8_t>& report) = 0;
};

/// Wakes the sensor: switches on reporting and full power and sets the report interval. Skips
/// settings that the sensor lacks or that cannot be read; keeps the other bits of the same reports.
/// Breaks off when a stop is requested.
void wakeLidSensor(const HidCollection& sensor, HidFeatureReports& reports,
                   const std::stop_token& stop = {});

/// Returns the hinge angle, 0 to 511 whole degrees, in an input report of the sensor, which begins
/// with the report's identifier; none if the bytes are no such report. Any bytes of any length may
/// be passed.
std::optional<float> decodeLidReport(std::span<const std::uint8_t> report);

}  // namespace chimewerk
