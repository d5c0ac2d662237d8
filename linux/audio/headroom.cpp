// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/headroom.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace chimewerk {

namespace {

constexpr std::size_t kChannels = 2;
/// A start is known to within this many blocks; a sound reserves this many more on either side.
constexpr std::int64_t kSlack = 2;
/// Just below full scale, so that rounding cannot take a sum beyond it.
constexpr float kFull = 0.98F;
/// The factors by which a gain may rise and fall from one block to the next. A faster change would
/// be audible as distortion.
constexpr float kRise = 1.5F;
constexpr float kFall = 2.0F;
/// The gain at which a rise from silence starts.
constexpr float kLeast = 0.1F;

std::vector<float> peaksOf(std::span<const float> stereo) {
    constexpr std::size_t kSamples = Headroom::kBlock * kChannels;
    std::vector<float> peaks((stereo.size() + kSamples - 1) / kSamples);
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        const auto block =
            stereo.subspan(i * kSamples, std::min(kSamples, stereo.size() - i * kSamples));
        float peak = 0.0F;
        for (const float sample : block) {
            peak = std::max(peak, std::fabs(sample));
        }
        peaks[i] = peak;
    }
    return peaks;
}

/// Returns the highest level that each block may have if the start is wrong by up to `kSlack`
/// blocks. The result starts that many blocks before `peaks` and ends that many after them.
std::vector<float> withSlack(const std::vector<float>& peaks) {
    std::vector<float> reach(peaks.size() + 2 * kSlack, 0.0F);
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        for (std::size_t near = i; near <= i + 2 * kSlack; ++near) {
            reach[near] = std::max(reach[near], peaks[i]);
        }
    }
    return reach;
}

/// Lowers gains that would change too fast.
void smooth(std::vector<float>& gains) {
    for (std::size_t i = 1; i < gains.size(); ++i) {
        gains[i] = std::min(gains[i], std::max(gains[i - 1], kLeast) * kRise);
    }
    for (std::size_t i = gains.size() - 1; i-- > 0;) {
        gains[i] = std::min(gains[i], std::max(gains[i + 1], kLeast) * kFall);
    }
}

/// Applies one gain per block, interpolated from the middle of one block to the middle of the next.
void applyGains(std::span<float> stereo, const std::vector<float>& gains) {
    for (std::size_t frame = 0; frame * kChannels < stereo.size(); ++frame) {
        // A gain moves towards a neighbour's only if that is lower, so no block gets more than its
        // own gain.
        const std::size_t block = frame / Headroom::kBlock;
        const float position = static_cast<float>(frame % Headroom::kBlock) / Headroom::kBlock;
        const bool early = position < 0.5F;
        const std::size_t neighbour =
            early ? (block > 0 ? block - 1 : 0) : std::min(block + 1, gains.size() - 1);
        const float away = early ? 0.5F - position : position - 0.5F;
        const float edge = std::min(gains[block], gains[neighbour]);
        const float gain = gains[block] + (edge - gains[block]) * 2.0F * away;
        stereo[frame * kChannels] *= gain;
        stereo[frame * kChannels + 1] *= gain;
    }
}

}  // namespace

void Headroom::fit(std::span<float> stereo, std::int64_t start, float ceiling) {
    if (stereo.empty()) {
        return;
    }
    std::vector<float> peaks = peaksOf(stereo);
    const std::int64_t begin = start / static_cast<std::int64_t>(kBlock) - kSlack;
    forgetBefore(begin);

    const std::vector<float> reach = withSlack(peaks);
    std::vector<float> allowed(reach.size(), 1.0F);
    for (std::size_t i = 0; i < reach.size(); ++i) {
        const float taken = levelAt(begin + static_cast<std::int64_t>(i));
        const float free = std::max(0.0F, std::min(kFull - taken, kFull * ceiling));
        const bool alone = taken <= 0.0F && reach[i] <= ceiling;
        if (reach[i] > free && !alone) {
            allowed[i] = free / reach[i];
        }
    }
    std::vector<float> gains(peaks.size());
    for (std::size_t i = 0; i < gains.size(); ++i) {
        gains[i] = std::ranges::min(std::span(allowed).subspan(i, 2 * kSlack + 1));
    }
    if (std::ranges::min(gains) < 1.0F) {
        smooth(gains);
        applyGains(stereo, gains);
        std::ranges::transform(peaks, gains, peaks.begin(), std::multiplies<>());
    }
    reserve(begin, withSlack(peaks));
}

float Headroom::levelAt(std::int64_t block) const {
    const bool known = block >= first_ && block - first_ < static_cast<std::int64_t>(kHorizon);
    return known ? levels_.at(static_cast<std::size_t>(block) % kHorizon) : 0.0F;
}

void Headroom::reserve(std::int64_t begin, const std::vector<float>& levels) {
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const std::int64_t block = begin + static_cast<std::int64_t>(i);
        if (block >= first_ && block - first_ < static_cast<std::int64_t>(kHorizon)) {
            level(block) += levels[i];
        }
    }
}

void Headroom::forgetBefore(std::int64_t block) {
    if (block - first_ >= static_cast<std::int64_t>(kHorizon)) {
        levels_.fill(0.0F);
        first_ = block;
    }
    for (; first_ < block; ++first_) {
        level(first_) = 0.0F;
    }
}

}  // namespace chimewerk
