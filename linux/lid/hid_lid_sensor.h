// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "linux/lid/hid_report_descriptor.h"

namespace chimewerk {

/// Returns the lid sensor among the collections of a HID device, if there is one. Any bytes of any
/// length may be passed.
std::optional<HidCollection> findLidSensor(std::span<const std::uint8_t> reportDescriptor);

/// The feature reports of a HID device, each with its identifier first (0 when the device does not
/// number its reports).
class HidFeatureReports {
public:
    virtual ~HidFeatureReports() = default;

    /// Returns the whole report, or nothing when it cannot be read. May wait for the device.
    virtual std::vector<std::uint8_t> read(std::uint8_t reportId) = 0;

    /// Sets the report; failures are ignored. May wait for the device.
    virtual void write(const std::vector<std::uint8_t>& report) = 0;
};

/// Wakes the sensor: turns on reporting and full power and sets the report interval. Settings that
/// the sensor lacks or that cannot be read are skipped, and other bits of the same report keep
/// their values.
void wakeLidSensor(const HidCollection& sensor, HidFeatureReports& reports);

/// Returns the hinge angle, 0 to 511 whole degrees, of one input report of the sensor, the report's
/// identifier first; none when the bytes are no such report. Any bytes of any length may be passed.
std::optional<float> decodeLidReport(std::span<const std::uint8_t> report);

}  // namespace chimewerk
