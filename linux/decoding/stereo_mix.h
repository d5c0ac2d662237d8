#pragma once

#include <span>

namespace chimewerk {

/// Mixes interleaved frames of `channels` samples down, or up, to stereo. Up to eight channels are taken to
/// be in the order of WAV files (front left and right, centre, low frequencies, surrounds), more to be left
/// and right in turn. The result is never louder than the loudest of its sources. Samples that are no numbers
/// become silence.
void mixToStereo(std::span<const float> frames, int channels, std::span<float> stereo);

}  // namespace chimewerk
