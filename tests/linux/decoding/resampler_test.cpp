// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/resampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tools/audio/sound_files.h"

namespace chimewerk {
namespace {

/// Returns the source converted to 48 kHz, fed and read in uneven pieces.
std::vector<float> convert(const std::vector<float>& source, int from) {
    Resampler resampler(from, 48000);
    std::vector<float> result;
    std::vector<float> piece;
    std::size_t fed = 0;
    std::size_t size = 2;
    bool ended = false;
    while (true) {
        piece.resize(size);
        const std::size_t frames = resampler.read(piece);
        result.insert(result.end(), piece.begin(),
                      piece.begin() + static_cast<std::ptrdiff_t>(2 * frames));
        if (frames * 2 < piece.size()) {
            if (ended) {
                return result;
            }
            const std::size_t count = std::min(size, source.size() - fed);
            resampler.feed(std::span(source).subspan(fed, count));
            fed += count;
            ended = fed == source.size();
            if (ended) {
                resampler.end();
            }
        }
        size = size * 3 % 1994 + 2;
    }
}

/// Returns a tone in the left channel alone.
std::vector<float> leftTone(double hertz, int rate) {
    auto samples = sine(hertz, 0.5, 0.5, rate);
    for (std::size_t i = 1; i < samples.size(); i += 2) {
        samples[i] = 0;
    }
    return samples;
}

TEST(TheResampler, KeepsPitchLevelPlaceAndLengthOfEachChannelAtAnyRate) {
    for (const int from :
         {100, 8000, 11025, 22050, 44100, 47999, 48001, 88200, 96000, 192000, 768000}) {
        const double hertz = from < 1000 ? 20 : 1000;
        const auto result = convert(leftTone(hertz, from), from);
        ASSERT_NEAR(static_cast<double>(result.size()) / 2, 24000, 48000.0 / from + 1) << from;
        // The ideal result differs only at the ends of the tone.
        const auto ideal = leftTone(hertz, 48000);
        const auto edge = static_cast<std::size_t>(2 * 48000 * 20 / from + 200) / 2 * 2;
        float error = 0;
        for (std::size_t i = edge; i + edge < result.size(); ++i) {
            error = std::max(error, std::fabs(result[i] - ideal[i]));
        }
        EXPECT_LT(error, from < 8000 ? 0.01F : 0.0005F) << from;
    }
}

TEST(TheResampler, RemovesWhatTheLowerRateCannotHold) {
    const auto result = convert(sine(30000, 0.5, 0.2, 96000), 96000);
    EXPECT_LT(peakOf(std::span(result).first(result.size() - 400), 400), 0.001F);
}

TEST(TheResampler, YieldsNothingFromNothing) {
    EXPECT_TRUE(convert({}, 44100).empty());
}

}  // namespace
}  // namespace chimewerk
