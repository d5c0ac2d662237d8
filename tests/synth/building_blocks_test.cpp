// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "synth/blocks/arithmetic.h"
#include "synth/blocks/filters.h"
#include "synth/blocks/noise.h"
#include "synth/blocks/oscillators.h"
#include "synth/blocks/resonators.h"
#include "synth/blocks/score.h"

namespace chimewerk::synth {
namespace {

double peakBetween(const Sound& sound, double from, double to) {
    double peak = 0.0;
    for (auto i = static_cast<std::size_t>(from * kSampleRate);
         i < static_cast<std::size_t>(to * kSampleRate); ++i) {
        peak = std::max(peak, std::abs(sound[i]));
    }
    return peak;
}

TEST(TheArithmetic, AgreesWithTheStandardLibrary) {
    for (int i = -1000; i < 1000; ++i) {
        const double x = 0.0371 * i;
        EXPECT_NEAR(sine(x), std::sin(2.0 * std::numbers::pi * x), 2e-10) << x;
        EXPECT_NEAR(powerOfTwo(x) / std::exp2(x), 1.0, 1e-12) << x;
    }
    EXPECT_NEAR(decibels(-20.0), 0.1, 1e-9);
}

TEST(ANoteName, HasItsPitchAndOtherTextsAreRefused) {
    EXPECT_NEAR("A4"_hz, 440.0, 1e-9);
    EXPECT_NEAR("C4"_hz, 261.6256, 1e-4);
    EXPECT_NEAR("C#5"_hz, "Db5"_hz, 1e-9);
    for (const char* const wrong : {"", "A", "H4", "A#"}) {
        EXPECT_THROW(operator""_hz(wrong, std::char_traits<char>::length(wrong)),
                     std::invalid_argument)
            << wrong;
    }
}

TEST(AStruckSound, FallsBySixtyDecibelsInItsTime) {
    for (const Sound& sound :
         {sineTone(1.0, 1000.0) * struck(0.001, 0.8), driven({{1000.0, 0.8, 1.0}}, blow(0.1), 1.0),
          struckPartials(1.0, 500.0, {{2.0, 1.0, 0.8}}, 0.001)}) {
        const double fall = peakBetween(sound, 0.85, 0.86) / peakBetween(sound, 0.05, 0.06);
        EXPECT_NEAR(20.0 * std::log10(fall), -60.0, 1.0);
    }
}

TEST(AFilter, PassesItsBandAndRemovesTheRest) {
    const auto gain = [](const auto& filter, double hertz) {
        return 20.0 * std::log10(peakBetween(filter(sineTone(0.3, hertz)), 0.2, 0.3));
    };
    const auto low = [](const Sound& sound) { return lowPass(sound, 1000.0); };
    const auto high = [](const Sound& sound) { return highPass(sound, 1000.0); };
    const auto band = [](const Sound& sound) { return bandPass(sound, 1000.0, 4.0); };
    EXPECT_NEAR(gain(low, 100.0), 0.0, 0.1);
    EXPECT_NEAR(gain(low, 1000.0), -3.0, 0.2);
    EXPECT_NEAR(gain(low, 4000.0), -24.0, 1.0);
    EXPECT_NEAR(gain(high, 7900.0), 0.0, 0.1);
    EXPECT_NEAR(gain(high, 250.0), -24.0, 0.5);
    EXPECT_NEAR(gain(band, 1000.0), 0.0, 0.1);
    EXPECT_LT(gain(band, 250.0), -20.0);
}

TEST(AGlide, ReachesItsEndInEqualRatios) {
    const Curve pitch = glide(100.0, 1600.0, 2.0);
    EXPECT_NEAR(pitch(0.0), 100.0, 1e-6);
    EXPECT_NEAR(pitch(0.5), 200.0, 1e-6);
    EXPECT_NEAR(pitch(2.0), 1600.0, 1e-6);
    EXPECT_NEAR(pitch(9.0), 1600.0, 1e-6);
}

TEST(Randomness, DependsOnItsSeedAlone) {
    EXPECT_EQ(noise(0.01, 1)[100], noise(0.01, 1)[100]);
    EXPECT_NE(noise(0.01, 1)[100], noise(0.01, 2)[100]);
    double sum = 0.0;
    for (const double sample : noise(1.0, 3)) {
        ASSERT_LE(std::abs(sample), 1.0);
        sum += sample;
    }
    EXPECT_NEAR(sum / kSampleRate, 0.0, 0.02);
}

}  // namespace
}  // namespace chimewerk::synth
