// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/level_shares.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace chimewerk {

namespace {

constexpr std::size_t kChannels = 2;
/// By how many blocks a sound may play earlier and later than stated.
constexpr std::size_t kEarly = 3;
constexpr std::size_t kLate = 4;
/// Just below the full range: small changes of gains are not sent.
constexpr float kFull = 0.97F;
/// What the last sound to start gets at least: a little more than half.
constexpr float kLastShare = 0.52F;
/// Below this a gain is a power of two.
constexpr float kStepped = 0.2F;
/// The factors by which a gain may rise and fall from one block to the next.
constexpr float kRise = 1.5F;
constexpr float kFall = 2.0F;
/// Where a gain starts to rise from silence.
constexpr float kLeast = 0.1F;

float peakOf(std::span<const float> samples) {
    // Eight at once, so that the compiler can use vector instructions.
    std::array<float, 8> peaks{};
    std::size_t i = 0;
    for (; i + peaks.size() <= samples.size(); i += peaks.size()) {
        for (std::size_t lane = 0; lane < peaks.size(); ++lane) {
            peaks[lane] = std::max(peaks[lane], std::fabs(samples[i + lane]));
        }
    }
    for (; i < samples.size(); ++i) {
        peaks[0] = std::max(peaks[0], std::fabs(samples[i]));
    }
    return std::ranges::max(peaks);
}

/// Returns the highest level that each block may have if the sound is early or late.
std::vector<float> withSlack(std::span<const float> levels) {
    std::vector<float> reach(levels.empty() ? 0 : levels.size() + kLate, 0.0F);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        for (std::size_t near = i - std::min(i, kEarly); near <= i + kLate; ++near) {
            reach[near] = std::max(reach[near], levels[i]);
        }
    }
    return reach;
}

/// The gains of all sounds in one block, by the same index as the levels.
class BlockShare {
public:
    explicit BlockShare(std::span<const float> levels) {
        float all = 0.0F;
        for (std::size_t i = 0; i < levels.size(); ++i) {
            if (levels[i] > 0.0F) {
                all += levels[i];
                newest_ = i;
            }
        }
        const float newest = levels[newest_];
        const float others = all - newest;
        if (all <= 1.0F && (others <= 0.0F || all <= kFull)) {
            return;
        }
        const float kept = others <= 0.0F ? std::min(newest, 1.0F)
                                          : std::min(newest, std::max(kLastShare, kFull - others));
        newestGain_ = kept / newest;
        othersGain_ = others <= 0.0F ? 1.0F : stepped(std::min(1.0F, (kFull - kept) / others));
    }

    float gainOf(std::size_t sound) const { return sound == newest_ ? newestGain_ : othersGain_; }

private:
    /// Many sounds at once are lowered in steps, so that not all have to be sent again whenever one
    /// is added.
    static float stepped(float gain) {
        return gain >= kStepped ? gain : std::exp2(std::floor(std::log2(gain)));
    }

    std::size_t newest_ = 0;
    float newestGain_ = 1.0F;
    float othersGain_ = 1.0F;
};

}  // namespace

std::vector<float> levelsOf(std::span<const float> stereo) {
    constexpr std::size_t kSamples = kLevelBlock * kChannels;
    std::vector<float> levels((stereo.size() + kSamples - 1) / kSamples);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const auto block =
            stereo.subspan(i * kSamples, std::min(kSamples, stereo.size() - i * kSamples));
        levels[i] = peakOf(block);
    }
    return levels;
}

std::vector<std::vector<float>> shareRange(std::span<const std::span<const float>> sounds) {
    std::vector<std::vector<float>> reach;
    std::vector<std::vector<float>> gains;
    std::size_t blocks = 0;
    for (const auto& levels : sounds) {
        reach.push_back(withSlack(levels));
        gains.emplace_back(levels.size(), 1.0F);
        blocks = std::max(blocks, reach.back().size());
    }
    std::vector<float> level(sounds.size());
    for (std::size_t block = 0; block < blocks; ++block) {
        for (std::size_t i = 0; i < sounds.size(); ++i) {
            level[i] = block < reach[i].size() ? reach[i][block] : 0.0F;
        }
        const BlockShare share(level);
        for (std::size_t i = 0; i < sounds.size(); ++i) {
            // The gain holds for every block of the sound that may play at this time.
            const std::size_t last = std::min(block + kEarly + 1, gains[i].size());
            for (std::size_t near = block - std::min(block, kLate); near < last; ++near) {
                gains[i][near] = std::min(gains[i][near], share.gainOf(i));
            }
        }
    }
    for (auto& each : gains) {
        smoothGains(each);
    }
    return gains;
}

void smoothGains(std::span<float> gains) {
    for (std::size_t i = 1; i < gains.size(); ++i) {
        gains[i] = std::min(gains[i], std::max(gains[i - 1], kLeast) * kRise);
    }
    for (std::size_t i = gains.size(); i-- > 1;) {
        gains[i - 1] = std::min(gains[i - 1], std::max(gains[i], kLeast) * kFall);
    }
}

void applyGains(std::span<float> stereo, std::span<const float> gains) {
    for (std::size_t frame = 0; frame * kChannels < stereo.size(); ++frame) {
        const std::size_t block = frame / kLevelBlock;
        const float position = static_cast<float>(frame % kLevelBlock) / kLevelBlock;
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

}  // namespace chimewerk
