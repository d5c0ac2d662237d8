// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares the recorder with the server's own account of when it played something. Needs a
// private session.
#include "tools/recorder/sink_recorder.h"

#include <gtest/gtest.h>
#include <pulse/simple.h>

#include <cmath>
#include <memory>
#include <vector>

#include "tools/process/shell.h"

namespace chimewerk {
namespace {

using namespace std::chrono_literals;

constexpr int kRate = 48000;

/// Plays half a second of silence, a click of this level and half a second of silence. Returns when
/// the server plays the click.
SteadyTime playClick(float level) {
    const pa_sample_spec form{PA_SAMPLE_FLOAT32NE, kRate, 1};
    const std::unique_ptr<pa_simple, decltype(&pa_simple_free)> player(
        pa_simple_new(nullptr, "click", PA_STREAM_PLAYBACK, nullptr, "click", &form, nullptr,
                      nullptr, nullptr),
        &pa_simple_free);
    std::vector<float> samples(kRate);
    samples[kRate / 2] = level;
    pa_simple_write(player.get(), samples.data(), samples.size() * sizeof(float), nullptr);
    const std::chrono::microseconds left(pa_simple_get_latency(player.get(), nullptr));
    const SteadyTime end = std::chrono::steady_clock::now() + left;
    pa_simple_drain(player.get(), nullptr);
    return end - 500ms;
}

TEST(TheSinkRecorder, TimesAClickAsTheServerDoesAndRecordsNothingElse) {
    for (const auto suspending :
         {SinkRecorder::Suspending::Prevented, SinkRecorder::Suspending::Allowed}) {
        SinkRecorder recorder("speaker", suspending);
        ASSERT_TRUE(recorder.start());
        if (suspending == SinkRecorder::Suspending::Allowed) {
            ASSERT_EQ(runShell("timeout 10 sh -c 'until pactl list short sinks | grep -q SUSPENDED;"
                               " do sleep 0.1; done'"),
                      0);
        }
        const SteadyTime before = std::chrono::steady_clock::now();
        const SteadyTime expected = playClick(0.75F);
        const auto recorded = recorder.waitForSound(before, 0.1F, expected + 1s);
        ASSERT_TRUE(recorded);
        EXPECT_NEAR(std::chrono::duration<double>(*recorded - expected).count(), 0, 0.01);
        EXPECT_FLOAT_EQ(recorder.peakBetween(*recorded - 100ms, *recorded + 100ms), 0.75F);
        EXPECT_EQ(recorder.peakBetween(*recorded - 400ms, *recorded - 1ms), 0.0F);
        EXPECT_FALSE(recorder.firstSoundAfter(*recorded + 1ms, 0.001F));
    }
}

TEST(TheSinkRecorder, NoticesThatItsSinkOrServerHasGone) {
    const std::string passing =
        outputOfShell("pactl load-module module-null-sink sink_name=passing");
    for (const auto& [sink, end] : {std::pair{"passing", "pactl unload-module " + passing},
                                    {"speaker", "kill -KILL $(cat $PULSE_RUNTIME_PATH/pid)"}}) {
        SinkRecorder recorder(sink);
        EXPECT_FALSE(recorder.isRecording()) << sink;
        ASSERT_TRUE(recorder.start()) << sink;
        ASSERT_EQ(runShell(end), 0);
        EXPECT_FALSE(recorder.waitUntilRecorded(std::chrono::steady_clock::now() + 1h, 10s));
        EXPECT_FALSE(recorder.isRecording()) << sink;
    }
}

}  // namespace
}  // namespace chimewerk
