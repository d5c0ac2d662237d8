// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <span>

namespace chimewerk {

/// Full scale is 1. Samples of floats may go beyond it, but no sound means more than this.
inline constexpr float kLoudest = 16;

/// Mixes interleaved frames of `channels` samples to stereo. Up to eight channels are in the order
/// of WAV files (front left and right, centre, low frequencies, surrounds); more are left and right
/// in turn. The result is never louder than the loudest channel. Samples that are not numbers
/// become silence, and those beyond `kLoudest` are limited to it. Mixes no more than fits into
/// `stereo`.
void mixToStereo(std::span<const float> frames, std::size_t channels, std::span<float> stereo);

}  // namespace chimewerk
