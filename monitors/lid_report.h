#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace chimewerk {

/// The lid's hinge angle in whole degrees, 0 to 511, from one raw input report of its sensor, the report's
/// identifier first; none when the bytes are no such report. Any bytes of any length may be passed. Any
/// thread.
std::optional<float> decodeLidReport(std::span<const std::uint8_t> report);

}  // namespace chimewerk
