// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/headroom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "tools/audio/sound_files.h"

namespace chimewerk {
namespace {

constexpr std::int64_t kSecond = 48000;

/// Adds a sound to a recording, both in stereo, from frame `at` on.
void add(std::vector<float>& recording, const std::vector<float>& stereo, std::int64_t at) {
    const auto from = 2 * static_cast<std::size_t>(at);
    recording.resize(std::max(recording.size(), from + stereo.size()));
    for (std::size_t i = 0; i < stereo.size(); ++i) {
        recording[from + i] += stereo[i];
    }
}

float peak(const std::vector<float>& samples, std::size_t from = 0) {
    float most = 0;
    for (std::size_t i = from; i < samples.size(); ++i) {
        most = std::max(most, std::fabs(samples[i]));
    }
    return most;
}

/// Returns the sound of a bell: loud at first and fading.
std::vector<float> bell(double seconds, double amplitude) {
    auto samples = sine(700, amplitude, seconds);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] *= static_cast<float>(
            std::exp(-6.0 * static_cast<double>(i) / static_cast<double>(samples.size())));
    }
    return samples;
}

TEST(Headroom, DoesNotChangeASoundThatPlaysAloneOrFits) {
    for (const double amplitude : {1.0, 0.4}) {
        Headroom headroom;
        for (int i = 0; i < 50; ++i) {
            auto sound = sine(500, amplitude, 0.1);
            const auto before = sound;
            headroom.fit(sound, kSecond * 10 + i * kSecond / 2);
            EXPECT_EQ(sound, before) << amplitude;
        }
    }
    // Two sounds that fit side by side.
    Headroom headroom;
    for (int i = 0; i < 2; ++i) {
        auto sound = sine(500, 0.45, 1.0);
        const auto before = sound;
        headroom.fit(sound, kSecond * 60);
        EXPECT_EQ(sound, before);
    }
}

TEST(Headroom, KeepsAnySumInRangeEvenIfStartsAreInexact) {
    std::mt19937 random(7);
    std::uniform_int_distribution<std::int64_t> startOffset(0, kSecond);
    std::uniform_int_distribution<std::int64_t> error(-470, 470);
    for (const int sounds : {2, 10, 100}) {
        Headroom headroom;
        std::vector<std::int64_t> starts(static_cast<std::size_t>(sounds));
        std::generate(starts.begin(), starts.end(), [&] { return kSecond + startOffset(random); });
        std::sort(starts.begin(), starts.end());
        std::vector<float> recording;
        for (const std::int64_t start : starts) {
            auto sound = bell(0.4, 0.9);
            headroom.fit(sound, start);
            add(recording, sound, start + error(random));
        }
        EXPECT_LE(peak(recording), 1.0F) << sounds;
        EXPECT_GE(peak(recording), 0.85F) << sounds;
    }
}

TEST(Headroom, RaisesASoundAsTheOneBeforeItFades) {
    Headroom headroom;
    auto first = bell(0.5, 0.95);
    headroom.fit(first, kSecond);
    auto second = sine(300, 0.8, 1.0);
    headroom.fit(second, kSecond);
    EXPECT_LT(peak({second.begin(), second.begin() + 400}), 0.1F);
    EXPECT_NEAR(peak(second, second.size() / 2), 0.8F, 0.001F);
}

TEST(Headroom, ScalesDownASoundThatIsItselfTooLoud) {
    Headroom headroom;
    auto sound = sine(500, 4.0, 0.3);
    headroom.fit(sound, 0);
    EXPECT_LE(peak(sound), 1.0F);
    EXPECT_GE(peak(sound), 0.9F);
}

TEST(Headroom, LeavesRoomForOthersBesideALongSound) {
    Headroom headroom;
    for (int part = 0; part < 4; ++part) {
        auto sound = sine(500, 1.0, 0.5);
        headroom.fit(sound, part * kSecond / 2, 0.75F);
        EXPECT_LE(peak(sound), 0.75F);
    }
    auto event = sine(300, 0.5, 0.2);
    headroom.fit(event, kSecond);
    EXPECT_GT(peak(event), 0.2F);
}

TEST(Headroom, ForgetsThePastEvenAfterAVeryLongTime) {
    Headroom headroom;
    for (const std::int64_t start :
         {std::int64_t{0}, kSecond * 5, kSecond * 86400 * 365, kSecond * 86400 * 366}) {
        auto sound = sine(500, 0.9, 2.0);
        headroom.fit(sound, start);
        EXPECT_NEAR(peak(sound), 0.9F, 0.01F) << start;
    }
    std::vector<float> nothing;
    headroom.fit(nothing, 0);
}

TEST(Headroom, ChangesGainsGently) {
    Headroom headroom;
    auto loud = sine(500, 0.95, 0.1);
    headroom.fit(loud, kSecond);
    std::vector<float> level(48000, 0.5F);
    headroom.fit(level, kSecond - 4800);
    float step = 0;
    for (std::size_t i = 2; i < level.size(); ++i) {
        step = std::max(step, std::fabs(level[i] - level[i - 2]));
    }
    EXPECT_LT(step, 0.002F);
}

}  // namespace
}  // namespace chimewerk
