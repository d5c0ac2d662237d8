// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/sent_sound.h"

#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

constexpr std::size_t kChannels = 2;
constexpr auto kBlock = static_cast<std::int64_t>(kLevelBlock);
/// The server may be this many blocks behind the frame that is taken to be played now.
constexpr std::int64_t kBehind = 4;
/// A gain that is lower by less than this is not worth sending frames again.
constexpr float kAlike = 0.98F;
constexpr float kSilence = 0.002F;

}  // namespace

void SentSound::begin(std::vector<float> stereo) {
    stereo_ = std::move(stereo);
    levels_ = levelsOf(stereo_);
    gains_.assign(levels_.size(), 1.0F);
}

void SentSound::append(std::span<const float> stereo) {
    const std::size_t whole = stereo_.size() / (kLevelBlock * kChannels);
    stereo_.insert(stereo_.end(), stereo.begin(), stereo.end());
    levels_.resize(whole);
    const auto added = levelsOf(std::span(stereo_).subspan(whole * kLevelBlock * kChannels));
    levels_.insert(levels_.end(), added.begin(), added.end());
    gains_.resize(levels_.size(), 1.0F);
}

void SentSound::forgetBefore(std::int64_t frame) {
    const std::int64_t kept = std::min(frame, sent_) / kBlock - 2 * kBehind;
    const std::int64_t blocks = std::max<std::int64_t>(kept - first_ / kBlock, 0);
    first_ += blocks * kBlock;
    stereo_.erase(stereo_.begin(), stereo_.begin() + blocks * kBlock * std::int64_t{kChannels});
    levels_.erase(levels_.begin(), levels_.begin() + blocks);
    gains_.erase(gains_.begin(), gains_.begin() + blocks);
}

std::span<const float> SentSound::levelsFrom(std::int64_t frame) const {
    return std::span(levels_).subspan(blockOf(frame));
}

SentSound::Change SentSound::send(std::int64_t frame, std::span<const float> gains) {
    const std::size_t now = blockOf(frame);
    const std::size_t sentBlocks = blockOf(sent_ + kBlock - 1);
    bool lower = false;
    for (std::size_t i = now; i < std::min(sentBlocks, now + gains.size()); ++i) {
        lower |= gains[i - now] < kAlike * gains_[i] && levels_[i] > kSilence;
    }
    const std::int64_t from =
        lower ? std::max(first_, first_ + (static_cast<std::int64_t>(now) - kBehind) * kBlock)
              : sent_;
    if (from >= end()) {
        return {};
    }
    // The first of the blocks before now stays as it was, to fade from.
    for (std::size_t i = blockOf(from + kBlock); lower && i < now; ++i) {
        gains_[i] = std::min(gains_[i], gains.front());
    }
    const std::size_t changed = lower ? now : std::max(now, sentBlocks);
    for (std::size_t i = changed; i < now + gains.size(); ++i) {
        gains_[i] = i < sentBlocks ? std::min(gains_[i], gains[i - now]) : gains[i - now];
    }
    smoothFrom(lower ? blockOf(from) : changed);
    Change change{.rewind = static_cast<std::size_t>(sent_ - from), .stereo = render(from)};
    sent_ = end();
    return change;
}

/// Smooths the gains from this block on, and towards the block before it.
void SentSound::smoothFrom(std::size_t block) {
    const std::size_t before = block - std::min<std::size_t>(block, 1);
    const float kept = gains_[before];
    smoothGains(std::span(gains_).subspan(before));
    if (before < block) {
        gains_[before] = kept;
    }
}

std::size_t SentSound::blockOf(std::int64_t frame) const {
    const std::int64_t block = (std::max(frame, first_) - first_) / kBlock;
    return std::min(static_cast<std::size_t>(block), levels_.size());
}

std::int64_t SentSound::end() const {
    return first_ + static_cast<std::int64_t>(stereo_.size() / kChannels);
}

std::span<const float> SentSound::render(std::int64_t from) {
    const std::size_t block = blockOf(from);
    const auto whole = std::span(stereo_).subspan(block * kLevelBlock * kChannels);
    const auto skipped = static_cast<std::size_t>(from - first_) - block * kLevelBlock;
    const auto gains = std::span(gains_).subspan(block);
    if (std::ranges::all_of(gains, [](float gain) { return gain >= 1.0F; })) {
        return whole.subspan(skipped * kChannels);
    }
    lowered_.assign(whole.begin(), whole.end());
    applyGains(lowered_, gains);
    return std::span(lowered_).subspan(skipped * kChannels);
}

}  // namespace chimewerk
