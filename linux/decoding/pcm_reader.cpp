// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/pcm_reader.h"

#include <algorithm>

#include "linux/decoding/stereo_mix.h"

namespace chimewerk {

namespace {

constexpr std::size_t kDecodeFrames = 4096;

}  // namespace

std::unique_ptr<PcmReader> PcmReader::over(std::unique_ptr<Decoder> decoder) {
    const int rate = decoder->rate();
    if (rate < Resampler::kLowestRate || rate > Resampler::kHighestRate) {
        return nullptr;
    }
    return std::unique_ptr<PcmReader>(new PcmReader(std::move(decoder)));
}

PcmReader::PcmReader(std::unique_ptr<Decoder> decoder) : decoder_(std::move(decoder)) {
    if (decoder_->rate() != kOutputRate) {
        resampler_ = std::make_unique<Resampler>(decoder_->rate(), kOutputRate);
    }
}

std::size_t PcmReader::read(std::span<float> stereo) {
    return resampler_ ? readConverted(stereo) : readAtOwnRate(stereo);
}

std::size_t PcmReader::readAtOwnRate(std::span<float> stereo) {
    const auto channels = static_cast<std::size_t>(decoder_->channels());
    decoded_.resize(kDecodeFrames * channels);
    const std::size_t wanted = stereo.size() / kOutputChannels;
    std::size_t done = 0;
    while (done < wanted && !ended_) {
        const std::size_t asked = std::min(wanted - done, kDecodeFrames);
        const std::span block = std::span(decoded_).first(asked * channels);
        const std::size_t got = decoder_->read(block);
        mixToStereo(block.first(got * channels), decoder_->channels(),
                    stereo.subspan(done * kOutputChannels));
        done += got;
        ended_ = got < asked;
    }
    return done;
}

std::size_t PcmReader::readConverted(std::span<float> stereo) {
    std::size_t done = resampler_->read(stereo);
    while (done * kOutputChannels + 1 < stereo.size() && !ended_) {
        // Decodes only what the missing frames are made of: decoding more would delay the start of
        // a sound.
        const std::size_t wanted = stereo.size() / kOutputChannels - done;
        const auto source = wanted * static_cast<std::size_t>(decoder_->rate()) / kOutputRate + 64;
        own_.resize(std::min(source, kDecodeFrames) * kOutputChannels);
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
