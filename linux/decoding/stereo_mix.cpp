// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/stereo_mix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace chimewerk {

namespace {

/// How much of a channel goes to each side.
struct Share {
    float left;
    float right;
};

constexpr Share kLeft{1.0F, 0.0F};
constexpr Share kRight{0.0F, 1.0F};
constexpr Share kCentre{0.7071F, 0.7071F};
/// The low-frequency channel is left out, as is usual without a speaker for it.
constexpr Share kNone{0.0F, 0.0F};

std::vector<Share> sharesOf(std::size_t channels) {
    switch (channels) {
        case 1:
            return {{1.0F, 1.0F}};
        case 2:
            return {kLeft, kRight};
        case 3:
            return {kLeft, kRight, kCentre};
        case 4:
            return {kLeft, kRight, kLeft, kRight};
        case 5:
            return {kLeft, kRight, kCentre, kLeft, kRight};
        case 6:
            return {kLeft, kRight, kCentre, kNone, kLeft, kRight};
        case 7:
            return {kLeft, kRight, kCentre, kNone, kCentre, kLeft, kRight};
        case 8:
            return {kLeft, kRight, kCentre, kNone, kLeft, kRight, kLeft, kRight};
        default: {
            std::vector<Share> shares(channels);
            for (std::size_t i = 0; i < shares.size(); ++i) {
                shares[i] = i % 2 == 0 ? kLeft : kRight;
            }
            return shares;
        }
    }
}

std::vector<Share> normalisedShares(std::size_t channels) {
    std::vector<Share> shares = sharesOf(channels);
    Share sum = kNone;
    for (const Share& share : shares) {
        sum = {sum.left + share.left, sum.right + share.right};
    }
    for (Share& share : shares) {
        share = {share.left / sum.left, share.right / sum.right};
    }
    return shares;
}

float tamed(float sample) {
    return std::isfinite(sample) ? std::clamp(sample, -kLoudest, kLoudest) : 0.0F;
}

}  // namespace

void mixToStereo(std::span<const float> frames, std::size_t channels, std::span<float> stereo) {
    const std::size_t width = channels;
    const std::size_t count = std::min(frames.size() / width, stereo.size() / 2);
    if (width <= 2) {
        for (std::size_t i = 0; i < count; ++i) {
            stereo[2 * i] = tamed(frames[i * width]);
            stereo[2 * i + 1] = tamed(frames[i * width + width - 1]);
        }
        return;
    }
    const std::vector<Share> shares = normalisedShares(channels);
    for (std::size_t i = 0; i < count; ++i) {
        Share mixed = kNone;
        for (std::size_t c = 0; c < width; ++c) {
            const float sample = tamed(frames[i * width + c]);
            mixed.left += shares[c].left * sample;
            mixed.right += shares[c].right * sample;
        }
        stereo[2 * i] = mixed.left;
        stereo[2 * i + 1] = mixed.right;
    }
}

}  // namespace chimewerk
