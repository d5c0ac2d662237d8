// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/pcm_reader.h"

#include <algorithm>

#include "linux/decoding/stereo_mix.h"

namespace chimewerk {

namespace {

/// The most frames decoded at once.
constexpr std::size_t kBlockFrames = 4096;
constexpr std::size_t kBlockSamples = 4 * kBlockFrames;

}  // namespace

std::unique_ptr<PcmReader> PcmReader::over(std::unique_ptr<Decoder> decoder) {
    const int rate = decoder->rate();
    if (rate < Resampler::kLowestRate || rate > Resampler::kHighestRate ||
        decoder->channels() < 1) {
        return nullptr;
    }
    return std::unique_ptr<PcmReader>(new PcmReader(std::move(decoder)));
}

PcmReader::PcmReader(std::unique_ptr<Decoder> decoder)
    : decoder_(std::move(decoder)),
      rate_(static_cast<std::size_t>(decoder_->rate())),
      channels_(static_cast<std::size_t>(decoder_->channels())),
      decoded_(std::clamp<std::size_t>(kBlockSamples / channels_, 1, kBlockFrames) * channels_) {
    if (rate_ != kOutputRate) {
        resampler_ = std::make_unique<Resampler>(static_cast<int>(rate_), kOutputRate);
    }
}

std::size_t PcmReader::read(std::span<float> stereo) {
    return resampler_ ? readConverted(stereo) : readAtOwnRate(stereo);
}

std::size_t PcmReader::readAtOwnRate(std::span<float> stereo) {
    const std::size_t wanted = stereo.size() / kOutputChannels;
    std::size_t done = 0;
    while (done < wanted && !ended_) {
        const std::size_t asked = std::min(wanted - done, decoded_.size() / channels_);
        const std::span block = std::span(decoded_).first(asked * channels_);
        const std::size_t got = std::min(decoder_->read(block), asked);
        mixToStereo(block.first(got * channels_), channels_,
                    stereo.subspan(done * kOutputChannels));
        done += got;
        ended_ = got < asked;
    }
    return done;
}

std::size_t PcmReader::readConverted(std::span<float> stereo) {
    std::size_t done = resampler_->read(stereo);
    while (done * kOutputChannels + 1 < stereo.size() && !ended_) {
        // Decodes only the source frames that are needed: decoding more would delay the start of
        // a sound.
        const std::size_t wanted = stereo.size() / kOutputChannels - done;
        const std::size_t source = wanted * rate_ / kOutputRate + 64;
        own_.resize(std::min(source, kBlockFrames) * kOutputChannels);
        const std::size_t frames = readAtOwnRate(own_);
        resampler_->feed(std::span(own_).first(frames * kOutputChannels));
        if (ended_) {
            resampler_->end();
        }
        done += resampler_->read(stereo.subspan(done * kOutputChannels));
    }
    return done;
}

}  // namespace chimewerk
