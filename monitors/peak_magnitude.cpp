// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/peak_magnitude.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace chimewerk {

namespace {

// Explicit vectors: without them the compiler keeps one running maximum, because it may not reorder
// floating-point comparisons.
constexpr std::size_t kLanes = 4;
using Floats [[gnu::vector_size(kLanes * sizeof(float))]] = float;
using Bits [[gnu::vector_size(kLanes * sizeof(float))]] = std::int32_t;
constexpr std::int32_t kAllButSign = 0x7FFFFFFF;
constexpr Bits kMagnitude = {kAllButSign, kAllButSign, kAllButSign, kAllButSign};

/// Several maxima at a time, so that a comparison need not wait for the one before.
constexpr std::size_t kVectors = 4;
constexpr std::size_t kStep = kVectors * kLanes;

}  // namespace

float peakMagnitude(std::span<const float> samples) {
    // A comparison with NaN is false, so NaN leaves the maximum unchanged.
    Floats maxima[kVectors] = {};
    for (; samples.size() >= kStep; samples = samples.subspan(kStep)) {
        Floats block[kVectors];
        std::memcpy(block, samples.data(), sizeof block);
        for (std::size_t i = 0; i < kVectors; ++i) {
            const auto magnitudes =
                reinterpret_cast<Floats>(reinterpret_cast<Bits>(block[i]) & kMagnitude);
            maxima[i] = magnitudes > maxima[i] ? magnitudes : maxima[i];
        }
    }
    float peak = 0.0F;
    for (const Floats& maximum : maxima) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            peak = std::max(peak, maximum[lane]);
        }
    }
    for (const float sample : samples) {
        const float magnitude = std::fabs(sample);
        peak = magnitude > peak ? magnitude : peak;
    }
    return std::min(peak, std::numeric_limits<float>::max());
}

}  // namespace chimewerk
