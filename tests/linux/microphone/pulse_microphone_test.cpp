// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Sends knocks through a real audio server. Needs a private session.
#include "linux/microphone/pulse_microphone.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

#include "monitors/knock_detector.h"
#include "support/kill_streams.h"
#include "support/run_queue.h"
#include "tools/audio/microphone_feeder.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/eventually.h"
#include "tools/process/shell.h"
#include "tools/recorder/sink_recorder.h"

namespace chimewerk {
namespace {

using namespace std::chrono_literals;

void run(const std::string& commands) {
    ASSERT_EQ(runShell(commands), 0) << commands;
}

class ThePulseMicrophone : public testing::Test {
protected:
    ThePulseMicrophone() {
        connection.open();
        detector.onKnock = [this] { ++knocks; };
        detector.setupMicrophoneDetection();
    }
    void TearDown() override { run("pactl set-default-source microphone"); }

    /// Knocks every third of a second until a knock is detected. Returns false if none is.
    bool detectsKnock(MicrophoneFeeder& feeder) {
        return runUntil(queue, [&, last = KnockDetector::Time{}, before = knocks]() mutable {
            if (const auto now = std::chrono::steady_clock::now(); now - last > 333ms) {
                last = now;
                feeder.knock();
            }
            return knocks > before;
        });
    }
    /// Makes this many knocks, a third of a second apart, and returns the number detected.
    int knocksDetected(int count, MicrophoneFeeder& feeder, std::size_t channel = 0) {
        const auto wait = [&](Seconds time) {
            runUntil(
                queue, [] { return false; }, time);
        };
        // PipeWire 1.4 delays what comes through a slow pipe by more than half a second.
        constexpr Seconds kOnTheWay{1};
        wait(kOnTheWay);
        const int before = knocks;
        for (int i = 0; i < count; ++i) {
            feeder.knock(channel);
            wait(Seconds{0.333});
        }
        wait(kOnTheWay);
        return knocks - before;
    }
    /// Returns whether the number of the program's recordings at the server becomes `count`.
    static bool recordings(const std::string& count) {
        constexpr auto kOurs =
            "pactl list source-outputs | grep -c 'application.name = \"Chimewerk\"'";
        return eventually([&] { return outputOfShell(kOurs) == count; });
    }

    const std::string fifo = std::getenv("CHIMEWERK_MICROPHONE");
    MicrophoneFeeder mono{fifo};
    TemporaryFolder folder;
    EpollMainQueue queue;
    PulseConnection connection;
    PulseMicrophone microphone{connection, 100ms};
    int knocks = 0;
    KnockDetector detector{queue, microphone};
};

TEST_F(ThePulseMicrophone, DetectsEachKnockOnceWhileTheSensitivityChanges) {
    ASSERT_TRUE(detectsKnock(mono));
    detector.slapThreshold = 0.75F;
    EXPECT_EQ(knocksDetected(6, mono), 6);
    detector.slapThreshold = 0.95F;
    EXPECT_EQ(knocksDetected(3, mono), 0);
}

TEST_F(ThePulseMicrophone, LeavesNothingRunningWhenItStopsAndOneStreamAfterManyRestarts) {
    ASSERT_TRUE(detectsKnock(mono));
    detector.stop();
    EXPECT_TRUE(recordings("0"));
    for (int i = 0; i < 20; ++i) {
        detector.restartAudio();
    }
    ASSERT_TRUE(detectsKnock(mono));
    EXPECT_TRUE(recordings("1"));
}

TEST_F(ThePulseMicrophone, HearsTheFirstChannelOfAnotherDefaultSourceAndTheOldOneWhenThatHasGone) {
    ASSERT_TRUE(detectsKnock(mono));
    const std::string other = outputOfShell(
        "pactl load-module module-pipe-source source_name=other file=" + folder / "other" +
        " format=float32le rate=16000 channels=2");
    {
        MicrophoneFeeder stereo(folder / "other", 16000, 2);
        run("pactl set-default-source other");
        ASSERT_TRUE(detectsKnock(stereo));
        EXPECT_EQ(knocksDetected(3, stereo, 1), 0);
        EXPECT_EQ(knocksDetected(3, stereo, 0), 3);
        EXPECT_EQ(knocksDetected(3, mono), 0);
        EXPECT_TRUE(recordings("1"));
    }
    run("pactl unload-module " + other);
    EXPECT_TRUE(detectsKnock(mono));
}

TEST_F(ThePulseMicrophone, NeverUsesAMonitorAsAMicrophone) {
    SinkRecorder recorder;
    ASSERT_TRUE(recorder.start());
    run("pactl set-default-source speaker.monitor");
    ASSERT_TRUE(detectsKnock(mono));  // The only real one.

    run("pactl unload-module module-pipe-source");
    ASSERT_TRUE(recordings("0"));
    const int before = knocks;
    const auto played = std::chrono::steady_clock::now();
    run("head -c 96000 /dev/zero >knocks; printf '\\377\\177%.0s' $(seq 200) >>knocks;"
        "paplay --raw --format=s16le --rate=48000 --channels=2 knocks; rm knocks");
    EXPECT_TRUE(recorder.waitForSound(played, 0.9F, std::chrono::steady_clock::now()));
    runReady(queue);
    EXPECT_EQ(knocks, before);
    EXPECT_TRUE(recordings("0"));

    run("pactl load-module module-pipe-source source_name=microphone file=" + fifo +
        " format=float32le rate=48000 channels=1");
    EXPECT_TRUE(detectsKnock(mono));
}

TEST_F(ThePulseMicrophone, ListensAgainWhenItsStreamHasBeenEndedOrTheServerHasDied) {
    ASSERT_TRUE(detectsKnock(mono));
    const auto streams = [] { return outputOfShell("pactl list short source-outputs | cut -f1"); };
    const std::string before = streams();
    ASSERT_TRUE(killStreams("source-output"));
    ASSERT_TRUE(eventually([&] { return streams() != before; }));
    EXPECT_TRUE(detectsKnock(mono));

    run("kill -9 $(cat \"$PULSE_RUNTIME_PATH/pid\")");
    EXPECT_EQ(knocksDetected(1, mono), 0);
    run("\"$CHIMEWERK_START_PULSEAUDIO\"");
    EXPECT_TRUE(detectsKnock(mono));
}

}  // namespace
}  // namespace chimewerk
