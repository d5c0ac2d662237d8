// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/hid_lid_sensor.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace chimewerk {

namespace {

/// Sensors for the orientation of a whole device have the same usage.
constexpr HidUsage kLidSensor = 0x0020'008A;
/// The report that begins with the angle.
constexpr std::uint8_t kAngleReport = 1;

bool isLidSensor(const HidCollection& collection) {
    return collection.usage == kLidSensor &&
           std::ranges::any_of(collection.inputs, [](const HidInput& input) {
               return input.reportId == kAngleReport && (input.bits == 9 || input.bits == 16);
           });
}

struct WakeUp {
    HidUsage property;
    std::uint32_t value;
};
/// Written in this order. Ten reports a second move the gauge smoothly and show a crossing in time.
constexpr std::array kWakeUps{
    WakeUp{.property = 0x0020'0316, .value = 1},    // Reporting state: all events.
    WakeUp{.property = 0x0020'0319, .value = 1},    // Power state: full power.
    WakeUp{.property = 0x0020'030E, .value = 100},  // Report interval, in milliseconds.
};

void setBits(std::span<std::uint8_t> bytes, std::size_t firstBit, unsigned bits,
             std::uint32_t value) {
    for (std::size_t i = 0; i < bits; ++i) {
        const std::size_t bit = firstBit + i;
        const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
        std::uint8_t& byte = bytes[bit / 8];
        byte = ((value >> i) & 1U) != 0 ? byte | mask : byte & static_cast<std::uint8_t>(~mask);
    }
}

}  // namespace

std::optional<HidCollection> findLidSensor(std::span<const std::uint8_t> reportDescriptor) {
    const auto collections = readHidReportDescriptor(reportDescriptor);
    const auto found = std::ranges::find_if(collections, isLidSensor);
    return found == collections.end() ? std::nullopt : std::optional(*found);
}

void wakeLidSensor(const HidCollection& sensor, HidFeatureReports& reports,
                   const std::stop_token& stop) {
    for (const WakeUp& wakeUp : kWakeUps) {
        const auto feature =
            std::ranges::find(sensor.features, wakeUp.property, &HidFeature::usage);
        if (stop.stop_requested() || feature == sensor.features.end()) {
            continue;
        }
        std::vector<std::uint8_t> report = reports.read(feature->reportId);
        if (report.size() * 8 < 8 + feature->firstBit + feature->bits) {
            continue;
        }
        const std::uint32_t first =
            feature->isChoice ? static_cast<std::uint32_t>(feature->logicalMinimum) : 0;
        setBits(std::span(report).subspan(1), feature->firstBit, feature->bits,
                first + wakeUp.value);
        reports.write(report);
    }
}

std::optional<float> decodeLidReport(std::span<const std::uint8_t> report) {
    constexpr unsigned kAngleBits = 0x1FF;
    if (report.size() < 3 || report[0] != kAngleReport) {
        return std::nullopt;
    }
    const unsigned degrees = ((unsigned{report[2]} << 8U) | report[1]) & kAngleBits;
    return static_cast<float>(degrees);
}

}  // namespace chimewerk
