// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <span>

namespace chimewerk {

/// Mixes interleaved frames of `channels` samples to stereo. Up to eight channels are in the order
/// of WAV files (front left and right, centre, low frequencies, surrounds); more are left and right
/// in turn. The result is never louder than the loudest channel. Samples that are not numbers
/// become silence.
void mixToStereo(std::span<const float> frames, int channels, std::span<float> stereo);

}  // namespace chimewerk
