// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <span>

namespace chimewerk {

/// Full scale is 1. Float samples may exceed it, but valid sounds stay below this limit.
inline constexpr float kLoudest = 16;

/// Mixes interleaved frames of `channels` samples to stereo. Up to eight channels are in the order
/// of WAV files (front left and right, centre, low frequencies, surrounds); with more, channels
/// alternate between left and right. The result is never louder than the loudest channel. NaN
/// becomes silence, and samples beyond `kLoudest` are clamped. Stops when `stereo` is full.
void mixToStereo(std::span<const float> frames, std::size_t channels, std::span<float> stereo);

}  // namespace chimewerk
