// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace chimewerk {

/// The usage page in the upper 16 bits, the usage in the lower.
using HidUsage = std::uint32_t;

/// A device setting that can be read and written: some bits of one of its feature reports.
struct HidFeature {
    /// The setting; for a choice among several values, the usage of the collection around it.
    HidUsage usage;
    /// 0 if the device does not number its reports.
    std::uint8_t reportId;
    /// Counted from the first bit after the report's identifier.
    std::size_t firstBit;
    /// 1 to 32.
    unsigned bits;
    /// The value of the first choice.
    std::int32_t logicalMinimum;
    /// Whether it is a choice among several values.
    bool isChoice;
    bool operator==(const HidFeature&) const = default;
};

/// The first field of an input report.
struct HidInput {
    /// 0 if the device does not number its reports.
    std::uint8_t reportId;
    unsigned bits;
    bool operator==(const HidInput&) const = default;
};

/// A top-level collection: a part of a device that acts as a separate device.
struct HidCollection {
    HidUsage usage;
    std::vector<HidFeature> features;
    /// The first field of each input report.
    std::vector<HidInput> inputs = {};
    bool operator==(const HidCollection&) const = default;
};

/// Returns the outermost collections that a HID report descriptor declares, with their features, in
/// order; empty if the descriptor is malformed. Any bytes may be passed. Any thread.
std::vector<HidCollection> readHidReportDescriptor(std::span<const std::uint8_t> descriptor);

}  // namespace chimewerk
