// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/level_shares.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "linux/playback/sent_sound.h"
#include "tools/audio/sound_files.h"

namespace chimewerk {
namespace {

constexpr auto kBlock = static_cast<std::int64_t>(kLevelBlock);

std::vector<std::vector<float>> share(const std::vector<std::vector<float>>& sounds) {
    return shareRange(std::vector<std::span<const float>>(sounds.begin(), sounds.end()));
}

TEST(TheShareOfTheRange, LeavesAloneWhatPlaysByItselfOrFitsIn) {
    const std::vector<float> loud(400, 1.0F);
    EXPECT_EQ(share({loud}).front(), loud);
    EXPECT_EQ(share({std::vector<float>(9, 0.5F), std::vector<float>(9, 0.4F)}),
              (std::vector(2, std::vector<float>(9, 1.0F))));
    EXPECT_TRUE(share({}).empty());
    EXPECT_TRUE(share({{}}).front().empty());
    EXPECT_NEAR(share({std::vector<float>(9, 4.0F)}).front().front(), 0.25F, 0.01F);
}

TEST(TheShareOfTheRange, GivesTheLastToStartHalfOfItsLevelAtLeastAndKeepsTheSumInRange) {
    for (const std::vector<float>& levels : std::vector<std::vector<float>>{
             {1, 1}, {1, 0.3F}, {1, 0.6F}, {0.3F, 1}, {0.2F, 0.9F, 0.4F}, {1, 1, 1, 1, 1, 1}}) {
        std::vector<std::vector<float>> sounds;
        for (const float level : levels) {
            sounds.emplace_back(20, level);
        }
        const auto gains = share(sounds);
        float sum = 0;
        for (std::size_t i = 0; i < levels.size(); ++i) {
            sum += gains[i][10] * levels[i];
            EXPECT_GT(gains[i][10], 0.0F) << i << " of " << levels.size();
        }
        EXPECT_LE(sum, 1.0F);
        EXPECT_GE(sum, 0.8F);
        EXPECT_GE(gains.back()[10], levels.back() <= 0.5F ? 1.0F : 0.5F) << levels.back();
    }
}

TEST(TheShareOfTheRange, LetsTheOthersSwellGentlyWhenTheLastOneEnds) {
    const auto gains = share({std::vector<float>(60, 1.0F), std::vector<float>(20, 0.9F)});
    EXPECT_LE(gains[0][23], 0.5F);
    EXPECT_EQ(gains[0].back(), 1.0F);
    for (std::size_t i = 1; i < 60; ++i) {
        EXPECT_LE(gains[0][i], gains[0][i - 1] * 1.6F);
    }
    std::vector<float> sound(std::size_t{60} * 2 * kLevelBlock, 0.5F);
    applyGains(sound, gains[0]);
    for (std::size_t i = 2; i < sound.size(); ++i) {
        ASSERT_LT(std::fabs(sound[i] - sound[i - 2]), 0.002F) << i;
    }
}

/// A server that plays what it is sent, and can be told to play it later than is thought.
struct Played {
    SentSound sound;
    std::int64_t start = 0;
    std::int64_t late = 0;
    std::vector<float> frames = {};

    void send(std::int64_t now, std::span<const float> gains) {
        const auto change = sound.send(std::max<std::int64_t>(now - start, 0), gains);
        const std::size_t from = frames.size() - 2 * change.rewind;
        const std::int64_t played = std::max<std::int64_t>(now - start - late, 0);
        for (std::size_t i = 0; i < change.stereo.size(); ++i) {
            if (from + i >= frames.size()) {
                frames.push_back(change.stereo[i]);
            } else if (static_cast<std::int64_t>((from + i) / 2) >= played) {
                frames[from + i] = change.stereo[i];
            }
        }
    }
};

TEST(TheShareOfTheRange, KeepsAnySumInRangeHoweverTheStartsAreOff) {
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int64_t> offset(0, 48000);
    std::uniform_int_distribution<std::int64_t> lateness(0, 900);
    for (const int count : {2, 10, 60}) {
        std::vector<std::int64_t> starts(static_cast<std::size_t>(count));
        std::ranges::generate(starts, [&] { return offset(random); });
        std::ranges::sort(starts);
        std::vector<Played> playing;
        for (const std::int64_t now : starts) {
            Played& added = playing.emplace_back();
            added.start = now;
            added.late = lateness(random);
            added.sound.append(sine(440, 1.0, 0.4));
            std::vector<std::span<const float>> levels;
            for (const Played& each : playing) {
                levels.push_back(each.sound.levelsFrom(now - each.start));
            }
            const auto gains = shareRange(levels);
            for (std::size_t i = 0; i < playing.size(); ++i) {
                playing[i].send(now, gains[i]);
            }
            EXPECT_GE(peakOf(std::span(added.frames).first(2400)), 0.48F);
        }
        std::vector<float> recording(std::size_t{2} * 96000);
        for (const Played& each : playing) {
            const auto at = static_cast<std::size_t>(2 * (each.start + each.late));
            for (std::size_t i = 0; i < each.frames.size(); ++i) {
                recording[at + i] += each.frames[i];
            }
        }
        EXPECT_LE(peakOf(recording), 1.0F) << count;
        EXPECT_GE(peakOf(recording), 0.7F) << count;
    }
}

TEST(ASentSound, IsSentAgainOnlyWhereItMustBecomeLower) {
    SentSound sound;
    const auto tone = sine(440, 0.8, 0.1);
    sound.append(tone);
    const auto all = static_cast<std::size_t>(20);
    const auto first = sound.send(0, std::vector<float>(all, 1.0F)).stereo;
    EXPECT_EQ(std::vector<float>(first.begin(), first.end()), tone);
    EXPECT_TRUE(sound.send(10 * kBlock, std::vector<float>(all - 10, 1.0F)).stereo.empty());
    const auto lower = sound.send(10 * kBlock, std::vector<float>(all - 10, 0.5F));
    EXPECT_EQ(lower.stereo.size(), 2 * lower.rewind);
    EXPECT_EQ(lower.rewind, 14 * kLevelBlock);
    EXPECT_NEAR(peakOf(lower.stereo, 2 * kLevelBlock), 0.4F, 0.001F);
    EXPECT_TRUE(sound.send(12 * kBlock, std::vector<float>(all - 12, 0.9F)).stereo.empty());
}

TEST(ASentSound, GoesOnInPartsOfAnyLengthAndFreesWhatWasPlayed) {
    SentSound sound;
    std::vector<float> whole;
    std::vector<float> sent;
    for (int part = 0; part < 40; ++part) {
        const auto more = sine(440 + part, 0.5, 0.0503 + part % 3 * 0.007);
        whole.insert(whole.end(), more.begin(), more.end());
        sound.append(more);
        const auto levels = sound.levelsFrom(sound.sent());
        const auto change = sound.send(sound.sent(), std::vector<float>(levels.size(), 1.0F));
        sent.resize(sent.size() - 2 * change.rewind);
        sent.insert(sent.end(), change.stereo.begin(), change.stereo.end());
        sound.forgetBefore(sound.sent() - 2400);
    }
    EXPECT_EQ(sent, whole);
    EXPECT_LT(sound.levelsFrom(0).size(), 30U);
}

}  // namespace
}  // namespace chimewerk
