// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <limits>

#include "linux/decoding/stereo_mix.h"
#include "linux/playback/overflow_mixer.h"

namespace chimewerk {
namespace {

TEST(TheStereoMix, SendsEachChannelToItsSideAndIsNeverLouderThanItsSources) {
    struct Case {
        std::vector<float> frame;
        float left;
        float right;
    };
    for (const Case& c : {
             Case{{0.5F}, 0.5F, 0.5F},
             Case{{0.5F, -0.25F}, 0.5F, -0.25F},
             Case{{1, 1, 1, 1, 1, 1}, 1, 1},
             Case{{1, 0, 0, 0, 1, 0}, 0.7388F, 0},
             Case{{0, 0, 0, 1, 0, 0}, 0, 0},
             Case{{0, 0, 1}, 0.4142F, 0.4142F},
             Case{{1, 0, 1, 0, 1, 0, 1, 0, 1, 0}, 1, 0},
             Case{{std::numeric_limits<float>::quiet_NaN(), 0.5F}, 0, 0.5F},
         }) {
        std::vector<float> stereo(2, -9.0F);
        mixToStereo(c.frame, static_cast<int>(c.frame.size()), stereo);
        EXPECT_NEAR(stereo[0], c.left, 1e-3) << c.frame.size() << " channels";
        EXPECT_NEAR(stereo[1], c.right, 1e-3) << c.frame.size() << " channels";
    }
}

TEST(TheOverflowMixer, AddsOverlappingSoundsAndDropsFinishedOnes) {
    OverflowMixer mixer;
    mixer.add(1, {0.125F, 0.125F, 0.125F, 0.125F}, true);
    mixer.add(2, {0.0625F, 0.0F}, true);
    std::vector<float> out(6, 9.0F);
    mixer.mix(out);
    EXPECT_EQ(out, (std::vector<float>{0.1875F, 0.125F, 0.125F, 0.125F, 0.0F, 0.0F}));
    EXPECT_TRUE(mixer.empty());
    mixer.append(1, out, true);
    EXPECT_TRUE(mixer.empty());
}

TEST(TheOverflowMixer, WaitsForTheRestOfASoundThatIsNotComplete) {
    OverflowMixer mixer;
    mixer.add(1, {0.2F, 0.2F, 0.25F, 0.25F}, false);
    std::vector<float> out(2);
    mixer.mix(out);
    EXPECT_EQ(mixer.framesLeft(1), 1U);
    mixer.append(1, std::vector<float>{0.1F, 0.1F}, false);
    EXPECT_EQ(mixer.framesLeft(1), 2U);
    out.resize(8);
    mixer.mix(out);
    EXPECT_EQ(out, (std::vector<float>{0.25F, 0.25F, 0.1F, 0.1F, 0, 0, 0, 0}));
    EXPECT_FALSE(mixer.empty());
    mixer.append(1, {}, true);
    mixer.mix(out);
    EXPECT_TRUE(mixer.empty());
}

TEST(TheOverflowMixer, BendsAnySumIntoHalfOfTheRangeAndDropsTheOldestShortSound) {
    OverflowMixer mixer;
    std::vector<float> out(2);
    mixer.add(0, std::vector<float>(4, 1.0F), false);
    for (std::uint64_t voice = 1; voice <= OverflowMixer::kMost; ++voice) {
        mixer.add(voice, std::vector<float>(4, 1.0F), true);
        mixer.mix(out);
        EXPECT_LE(out[0], 0.5F);
        EXPECT_GE(out[0], 0.45F);
    }
    EXPECT_EQ(mixer.mostFramesLeft(), 1U);
    for (std::uint64_t voice = 0; voice < OverflowMixer::kMost; ++voice) {
        mixer.add(100 + voice, std::vector<float>(4, 1.0F), voice != 0);
    }
    EXPECT_EQ(mixer.framesLeft(101), 0U);
    EXPECT_EQ(mixer.framesLeft(100), 2U);
}

}  // namespace
}  // namespace chimewerk
