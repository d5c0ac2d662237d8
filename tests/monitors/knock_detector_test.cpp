// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/knock_detector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "monitors/peak_magnitude.h"
#include "support/fake_microphone.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

using namespace std::chrono_literals;
using Authorization = Microphone::Authorization;

constexpr auto kBuffer = 10'667us;  // 512 frames at 48 kHz.
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// A detector that plays "slap" in a library with fake dependencies.
class TheKnockDetector : public testing::Test {
protected:
    TheKnockDetector() {
        library.event("slap").isEnabled = true;
        make();
    }
    void make() {
        detector =
            std::make_unique<KnockDetector>(library.queue, microphone, [this] { return now; });
        detector->onKnock = [this] { library->play("slap"); };
    }
    /// Sends buffers with these peaks and returns the number of knocks counted.
    int knocksIn(const std::vector<float>& peaks, std::chrono::nanoseconds apart = kBuffer) {
        const auto before = library.event("slap").triggerCount;
        for (const float peak : peaks) {
            microphone.send(peak);
            library.queue.runPosted();
            now += apart;
        }
        return static_cast<int>(library.event("slap").triggerCount - before);
    }
    void quiet() { knocksIn(std::vector<float>(60, 0.0F)); }

    SoundLibrary library;
    FakeMicrophone microphone;
    KnockDetector::Time now{0s};
    std::unique_ptr<KnockDetector> detector;
};

struct Case {
    const char* what;
    std::vector<float> peaks;
    int knocks;
    float level;  // At the end, where it matters
    std::chrono::nanoseconds apart = kBuffer;
    float threshold = 0.7F;
};

TEST_F(TheKnockDetector, CountsALoudPeakAfterQuietButNoneSoonAfter) {
    const float above = std::nextafter(0.7F, 1.0F);
    const Case cases[] = {
        {"one loud buffer", {0.8F}, 1, 0.2F},
        {"a negative peak", {-0.8F}, 1, 0.2F},
        {"a second one within the cooldown", {0.8F, 0.9F}, 1, 0.375F},
        {"at the threshold", {0.7F}, 0, 0.175F},
        {"just above it", {above}, 1, -1},
        {"quiet at the limit is not quiet", {1.0F, 1.0F}, 1, 0.4375F, 1s},
        {"a level just below the limit", {0.99F, 1.0F}, 2, -1, 1s},
        {"lasting noise", std::vector<float>(500, 1.0F), 1, -1},
        {"noise that ends", {1, 1, 1, 1, 0, 0, 0, 0, 1}, 2, -1},
        {"noise that has only just ended", {1, 1, 1, 1, 0, 0, 0, 1}, 1, -1},
        {"just within the cooldown", {0.8F, 0.8F}, 1, -1, 80ms},
        {"just after it", {0.8F, 0.8F}, 2, -1, 80ms + 1ns},
        {"low sensitivity", {0.8F}, 0, 0.2F, kBuffer, 0.9F},
        {"high sensitivity", {0.8F}, 1, 0.2F, kBuffer, 0.55F},
        {"samples that are no numbers", {kNaN}, 0, 0.0F},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        make();
        detector->startAudio();
        detector->slapThreshold = c.threshold;
        EXPECT_EQ(knocksIn(c.peaks, c.apart), c.knocks);
        if (c.level >= 0) {
            EXPECT_FLOAT_EQ(detector->previousAmplitude(), c.level);
        }
    }
}

TEST_F(TheKnockDetector, LowersItsLevelForAnEmptyBufferAndKeepsItForAnUnreadableOne) {
    detector->startAudio();
    knocksIn({0.8F});
    const auto knocked = detector->lastSlapTime();
    microphone.send(std::nullopt);
    EXPECT_FLOAT_EQ(detector->previousAmplitude(), 0.2F);
    microphone.send(std::span<const float>{});
    EXPECT_FLOAT_EQ(detector->previousAmplitude(), 0.15F);
    EXPECT_EQ(detector->lastSlapTime(), knocked);
}

TEST_F(TheKnockDetector, DetectsKnocksAgainAfterAnInfiniteSample) {
    detector->startAudio();
    EXPECT_EQ(knocksIn({kInfinity}), 1);
    EXPECT_EQ(knocksIn({0.8F}, 1s), 0);
    knocksIn(std::vector<float>(400, 0.0F));
    EXPECT_EQ(knocksIn({0.8F}), 1);
}

TEST_F(TheKnockDetector, RecordsAKnockWhoseEventIsOffWithoutPlayingOrCounting) {
    library.event("slap").isEnabled = false;
    detector->startAudio();
    now += 5s;
    EXPECT_EQ(knocksIn({0.8F}), 0);
    EXPECT_EQ(detector->lastSlapTime(), KnockDetector::Time(5s));
}

TEST_F(TheKnockDetector, PlaysOnTheMainQueue) {
    detector->startAudio();
    microphone.send(0.8F);
    EXPECT_EQ(library.event("slap").triggerCount, 0);
    library.queue.runPosted();
    EXPECT_EQ(library.event("slap").triggerCount, 1);
}

TEST_F(TheKnockDetector, ListensOnlyWithPermission) {
    microphone.access = Authorization::denied;
    detector->setupMicrophoneDetection();
    detector->restartAudio();
    EXPECT_EQ(microphone.enginesMade, 0U);
    EXPECT_FALSE(microphone.waiting);

    microphone.access = Authorization::authorized;
    detector->restartAudio();
    EXPECT_EQ(knocksIn({0.8F}), 1);
    EXPECT_EQ(microphone.askedFrames, 512U);

    microphone.access = Authorization::denied;
    detector->restartAudio();
    EXPECT_EQ(microphone.listening() + microphone.taps(), 0U);

    microphone.access = Authorization::authorized;
    detector->setupMicrophoneDetection();
    EXPECT_EQ(microphone.listening(), 1U);
}

TEST_F(TheKnockDetector, AsksForPermissionAndListensOnTheMainQueueWhenItIsGiven) {
    microphone.access = Authorization::notDetermined;
    detector->setupMicrophoneDetection();
    microphone.waiting(false);
    library.queue.runPosted();
    EXPECT_EQ(microphone.enginesMade, 0U);

    detector->setupMicrophoneDetection();
    microphone.access = Authorization::authorized;
    microphone.waiting(true);
    EXPECT_EQ(microphone.enginesMade, 0U);
    library.queue.runPosted();
    EXPECT_EQ(microphone.listening(), 1U);

    microphone.access = Authorization::notDetermined;
    detector->setupMicrophoneDetection();
    detector = nullptr;
    microphone.waiting(true);
    library.queue.runPosted();
    EXPECT_EQ(microphone.listening(), 0U);
}

TEST_F(TheKnockDetector, KeepsSensitivityLevelAndLastKnockThroughARestart) {
    detector->startAudio();
    detector->slapThreshold = 0.9F;
    EXPECT_EQ(knocksIn({0.95F}), 1);
    const float level = detector->previousAmplitude();
    const auto knocked = detector->lastSlapTime();
    detector->restartAudio();
    EXPECT_EQ(microphone.listening(), 1U);
    EXPECT_EQ(microphone.taps(), 1U);
    EXPECT_EQ(detector->previousAmplitude(), level);
    EXPECT_EQ(detector->lastSlapTime(), knocked);
    quiet();
    EXPECT_EQ(knocksIn({0.8F}), 0);
    EXPECT_EQ(knocksIn({0.95F}), 1);
}

TEST_F(TheKnockDetector, StaysSilentWhenTheEngineDoesNotStartAndListensAfterARestart) {
    microphone.works = false;
    detector->setupMicrophoneDetection();
    EXPECT_EQ(knocksIn({0.8F}), 0);
    EXPECT_EQ(microphone.enginesMade, 1U);
    microphone.works = true;
    detector->restartAudio();
    EXPECT_EQ(knocksIn({0.8F}), 1);
    detector->startAudio();
    EXPECT_EQ(microphone.listening(), 1U);
    detector->stop();
    quiet();
    EXPECT_EQ(knocksIn({0.8F}), 0);
    EXPECT_EQ(microphone.taps(), 0U);
}

TEST(ThePeakMagnitude, IsFoundAtAnyPosition) {
    for (const std::size_t length : {1U, 3U, 15U, 16U, 17U, 64U, 512U, 515U}) {
        for (std::size_t at = 0; at < length; ++at) {
            for (const float around : {0.25F, -0.0F, kNaN, -kNaN}) {
                for (const float peak : {0.5F, -0.5F}) {
                    std::vector<float> samples(length, around);
                    samples[at] = peak;
                    ASSERT_EQ(peakMagnitude(samples), 0.5F) << length << " " << at << " " << around;
                }
            }
        }
    }
    EXPECT_EQ(peakMagnitude({}), 0.0F);
    EXPECT_EQ(peakMagnitude(std::vector<float>(40, kNaN)), 0.0F);
    EXPECT_EQ(peakMagnitude(std::vector<float>{0.5F, -kInfinity}),
              std::numeric_limits<float>::max());
}

}  // namespace
}  // namespace chimewerk
