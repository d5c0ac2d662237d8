// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/overflow_mixer.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace chimewerk {

namespace {

/// Samples up to the knee are not changed. Those above it are compressed to below the ceiling.
constexpr float kKnee = 0.3F;
constexpr float kCeiling = 0.49F;

float limited(float sample) {
    constexpr float kSpan = kCeiling - kKnee;
    const float above = std::fabs(sample) - kKnee;
    return above <= 0 ? sample : std::copysign(kKnee + kSpan * std::tanh(above / kSpan), sample);
}

}  // namespace

void OverflowMixer::add(std::uint64_t voice, std::vector<float> stereo, bool complete) {
    if (voices_.size() == kMost) {
        const auto whole = std::ranges::find(voices_, true, &Voice::complete);
        voices_.erase(whole == voices_.end() ? voices_.begin() : whole);
    }
    voices_.push_back({voice, std::move(stereo), complete});
}

void OverflowMixer::append(std::uint64_t voice, std::span<const float> stereo, bool complete) {
    const auto found = std::ranges::find(voices_, voice, &Voice::id);
    if (found == voices_.end()) {
        return;
    }
    // Mixed frames are removed, so that a long sound does not use more and more memory.
    found->stereo.erase(found->stereo.begin(),
                        found->stereo.begin() + static_cast<std::ptrdiff_t>(found->mixed));
    found->mixed = 0;
    found->stereo.insert(found->stereo.end(), stereo.begin(), stereo.end());
    found->complete = complete;
}

void OverflowMixer::mix(std::span<float> stereo) {
    std::ranges::fill(stereo, 0.0F);
    for (Voice& voice : voices_) {
        const auto next = std::span(voice.stereo).subspan(voice.mixed);
        std::ranges::transform(stereo, next, stereo.begin(), std::plus<>());
        voice.mixed += std::min(stereo.size(), next.size());
    }
    std::ranges::transform(stereo, stereo.begin(), limited);
    std::erase_if(voices_, [](const Voice& voice) {
        return voice.complete && voice.mixed == voice.stereo.size();
    });
}

std::size_t OverflowMixer::framesLeft(std::uint64_t voice) const {
    const auto found = std::ranges::find(voices_, voice, &Voice::id);
    return found == voices_.end() ? 0 : (found->stereo.size() - found->mixed) / 2;
}

std::size_t OverflowMixer::mostFramesLeft() const {
    std::size_t most = 0;
    for (const Voice& voice : voices_) {
        most = std::max(most, (voice.stereo.size() - voice.mixed) / 2);
    }
    return most;
}

}  // namespace chimewerk
