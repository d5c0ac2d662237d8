// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "linux/decoding/decoder.h"
#include "linux/decoding/resampler.h"

namespace chimewerk {

/// The form in which all sounds go to the audio server: stereo frames of 32-bit floats.
inline constexpr int kOutputRate = 48000;
inline constexpr int kOutputChannels = 2;

/// Converts a decoder's frames, of any rate and number of channels, into the output form. All its
/// samples are numbers within `kLoudest`. Used by one thread at a time.
class PcmReader {
public:
    /// Returns null if the decoder's rate cannot be converted.
    static std::unique_ptr<PcmReader> over(std::unique_ptr<Decoder> decoder);

    /// Writes up to `stereo.size() / 2` frames and returns their number; fewer only at the
    /// sound's end.
    std::size_t read(std::span<float> stereo);

    const Decoder& decoder() const { return *decoder_; }

private:
    explicit PcmReader(std::unique_ptr<Decoder> decoder);
    std::size_t readAtOwnRate(std::span<float> stereo);
    std::size_t readConverted(std::span<float> stereo);

    const std::unique_ptr<Decoder> decoder_;
    const std::size_t rate_;
    const std::size_t channels_;
    std::unique_ptr<Resampler> resampler_;  // Null if the rate is the output's.
    std::vector<float> decoded_;            // Interleaved, as decoded; the size of one block.
    std::vector<float> own_;                // Stereo at the decoder's rate.
    bool ended_ = false;
};

}  // namespace chimewerk
