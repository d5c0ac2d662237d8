// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/recorder/recording.h"

#include <gtest/gtest.h>

#include <vector>

namespace chimewerk {
namespace {

using namespace std::chrono_literals;
using std::chrono::microseconds;

constexpr SteadyTime kStart{1000s};
constexpr std::size_t kBlock = Recording::kRate / 200;

/// Returns the time since the start in microseconds.
std::int64_t micros(SteadyTime time) {
    return std::chrono::round<microseconds>(time - kStart).count();
}

class ARecording : public testing::Test {
protected:
    /// Appends blocks of 5 ms. Each arrives `delay(i)` after the start of its playback.
    template <typename Delay>
    void arrive(int blocks, Delay delay) {
        for (int i = 0; i < blocks; ++i) {
            recording.append(std::vector<float>(kBlock * Recording::kChannels), played + delay(i));
            played += 5ms;
        }
    }
    void arrive(int blocks) {
        arrive(blocks, [](int) { return 0ms; });
    }
    /// Appends a block that is silent except for one sample of its 49th frame (1 ms after
    /// its start).
    void arriveWithClick(float level) {
        std::vector<float> samples(kBlock * Recording::kChannels);
        samples[48 * Recording::kChannels + 1] = level;
        recording.append(samples, played);
        played += 5ms;
    }

    Recording recording;
    SteadyTime played = kStart;
};

TEST_F(ARecording, FindsTheFirstSoundThatReachesTheThreshold) {
    arrive(10);
    arriveWithClick(0.01F);
    arriveWithClick(-0.5F);
    arriveWithClick(1.5F);
    const auto soundAfter = [&](std::chrono::milliseconds after, float threshold) {
        const auto sound = recording.firstSoundAfter(kStart + after, threshold);
        return sound ? micros(*sound) : -1;
    };
    EXPECT_EQ(soundAfter(-1s, 0.01F), 51'000);
    EXPECT_EQ(soundAfter(0s, 0.02F), 56'000);
    EXPECT_EQ(soundAfter(56ms, 0.02F), 56'000) << "the moment itself counts";
    EXPECT_EQ(soundAfter(57ms, 0.02F), 61'000);
    EXPECT_EQ(soundAfter(0s, 1.5F), 61'000) << "louder than full scale is not clipped";
    EXPECT_EQ(soundAfter(0s, 1.6F), -1);
    EXPECT_EQ(soundAfter(10s, 0.01F), -1);
}

TEST_F(ARecording, IsTimedByTheBlocksThatArriveOnTime) {
    EXPECT_FALSE(recording.end());
    const auto mostLateSomeEarly = [](int i) {
        if (i % 5 == 3) {
            return microseconds(-4000);
        }
        return microseconds(i % 3 == 0 ? 100 : i % 13 * 700);
    };
    arrive(400, mostLateSomeEarly);
    arriveWithClick(1.0F);
    arrive(400, mostLateSomeEarly);
    EXPECT_NEAR(static_cast<double>(micros(*recording.firstSoundAfter(kStart, 1.0F))), 2'001'000,
                200);
    EXPECT_NEAR(static_cast<double>(micros(*recording.end())), 4'005'000 - 21, 200);
}

TEST(ThePaceOfBlocks, IsLiveOnceATenthOfASecondArrivesInRealTime) {
    struct Case {
        const char* name;
        /// The length that arrives at once; then nothing arrives until that has been played.
        std::chrono::milliseconds renderedAhead;
        std::chrono::milliseconds liveAfter;
    };
    for (const Case& c : {Case{"fresh", 0ms, 100ms}, Case{"rendered ahead", 2000ms, 2100ms}}) {
        SCOPED_TRACE(c.name);
        LivePace pace(Recording::kRate);
        SteadyTime now = kStart;
        for (auto ahead = c.renderedAhead; ahead > 0ms; ahead -= 5ms) {
            EXPECT_FALSE(pace.blockArrived(kBlock, now));
        }
        now += c.renderedAhead;
        while (!pace.blockArrived(kBlock, now) && now < kStart + 10s) {
            now += 5ms;
        }
        EXPECT_NEAR(static_cast<double>(micros(now)),
                    static_cast<double>(microseconds(c.liveAfter).count()), 20'000);
    }
}

}  // namespace
}  // namespace chimewerk
