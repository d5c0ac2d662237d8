#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "linux/lid/hid_report_descriptor.h"

namespace chimewerk {

/// The lid's sensor among the collections of a HID device; none when it is not there.
std::optional<HidCollection> findLidSensor(std::span<const std::uint8_t> reportDescriptor);

/// The feature reports of a HID device, each with its identifier first (0 when the device does not number
/// them).
class HidFeatureReports {
public:
    virtual ~HidFeatureReports() = default;

    /// The whole report; empty when it cannot be read. May wait for the device.
    virtual std::vector<std::uint8_t> read(std::uint8_t reportId) = 0;

    /// Sets the report; a failure is silent. May wait for the device.
    virtual void write(const std::vector<std::uint8_t>& report) = 0;
};

/// Wakes the sensor: lets it report, turns its power on and sets how often it reports, as far as it has such
/// settings and they can be read. What lies beside them in the same report keeps its value.
void wakeLidSensor(const HidCollection& sensor, HidFeatureReports& reports);

}  // namespace chimewerk
