// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The output volume as a real audio server reports it. Needs a private session.
#include <gtest/gtest.h>

#include <string>

#include "linux/audio/pulse_output_volume_source.h"
#include "linux/base/epoll_main_queue.h"
#include "support/run_queue.h"
#include "tools/process/eventually.h"
#include "tools/process/shell.h"

namespace chimewerk {
namespace {

using Element = OutputVolumeSource::Element;

class TheOutputVolume : public testing::Test {
protected:
    void SetUp() override {
        connection.open();
        run("pactl set-default-sink speaker; pactl set-sink-volume speaker 50%");
        ASSERT_TRUE(becomes(0.5F));
    }
    static void run(const std::string& commands) { ASSERT_EQ(runShell(commands), 0) << commands; }
    bool becomes(std::optional<float> expected, Element element = Element::main) {
        return eventually([&] {
            const auto value = source.volume(element);
            return value && expected ? std::abs(*value - *expected) < 0.005F : value == expected;
        });
    }
    PulseConnection connection;
    EpollMainQueue queue;
    PulseOutputVolumeSource source{queue, connection};
};

TEST_F(TheOutputVolume, FollowsTheDefaultSinkAsMixersShowIt) {
    run("pactl set-sink-volume speaker 30% 70%");
    EXPECT_TRUE(becomes(0.7F));
    EXPECT_TRUE(becomes(0.3F, Element::firstChannel));
    run("pactl set-sink-volume speaker 140%");
    EXPECT_TRUE(becomes(1.0F));
    run("pactl set-sink-volume speaker 20%; pactl set-sink-mute speaker 1");
    EXPECT_TRUE(becomes(0.2F));
    EXPECT_TRUE(
        eventually([this] { return source.report().mechanism == "pulse: speaker, 20 %, muted"; }));
    run("pactl set-sink-mute speaker 0");
}

TEST_F(TheOutputVolume, LosesNoStepOfThreePercentToRounding) {
    for (const int start : {0, 31, 50, 64, 97}) {
        run("pactl set-sink-volume speaker 0% " + std::to_string(start) + "%");
        ASSERT_TRUE(becomes(static_cast<float>(start) / 100)) << start;
        const float before = *source.volume(Element::main);
        run("pactl set-sink-volume speaker +3%");
        EXPECT_TRUE(eventually([&] { return *source.volume(Element::main) > before; }));
        EXPECT_GE(*source.volume(Element::main) - before, 0.03F) << start;
        EXPECT_LT(*source.volume(Element::main) - before, 0.032F) << start;
    }
}

TEST_F(TheOutputVolume, FollowsWhenAnotherSinkBecomesTheDefaultOrTheDefaultGoesAway) {
    // PipeWire 1.4 ignores the volume of a null sink until a stream was connected to it.
    run("pactl load-module module-null-sink sink_name=other >\"$CHIMEWERK_SESSION/other\";"
        "pacat --device other /dev/null; pactl set-sink-volume other 80%;"
        "pactl set-default-sink other");
    EXPECT_TRUE(becomes(0.8F));
    run("pactl set-sink-volume speaker 10%");
    EXPECT_FALSE(eventually([&] { return source.volume(Element::main) < 0.7F; },
                            std::chrono::milliseconds(200)));
    run("pactl unload-module $(cat \"$CHIMEWERK_SESSION/other\")");
    EXPECT_TRUE(becomes(0.1F));
}

TEST_F(TheOutputVolume, ReportsTheLastOfManyChanges) {
    run("for i in $(seq 1 100); do pactl set-sink-volume speaker $i%; done; pactl set-sink-volume "
        "speaker "
        "37%");
    EXPECT_TRUE(becomes(0.37F));
}

TEST_F(TheOutputVolume, IsAnnouncedWhenItChangesAndAtNothingElse) {
    runReady(queue);
    int announcements = 0;
    source.onAnnouncement([&] { ++announcements; });
    const auto announces = [&](const std::string& commands) {
        run(commands);
        return runUntil(queue, [&] { return std::exchange(announcements, 0) > 0; });
    };
    EXPECT_TRUE(announces("pactl set-sink-volume speaker 40%"));
    EXPECT_TRUE(announces("pactl set-sink-volume speaker 20% 40%")) << "the first channel alone";
    // Playing and muting change the sink, not its volume.
    run("pactl set-sink-mute speaker 1; pactl suspend-sink speaker 1; pactl suspend-sink speaker 0;"
        "pactl set-sink-mute speaker 0");
    EXPECT_TRUE(announces("pactl set-sink-volume speaker 50%"));
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.3}), 0);
    EXPECT_TRUE(announces("kill -9 $(cat $PULSE_RUNTIME_PATH/pid)"));
    run("while pactl info >/dev/null 2>&1; do sleep 0.02; done; $CHIMEWERK_START_PULSEAUDIO");
    EXPECT_TRUE(runUntil(queue, [&] { return announcements > 0 && source.volume(Element::main); }));
}

TEST_F(TheOutputVolume, IsNoneWithoutAServerAndReturnsWithOne) {
    run("kill -9 $(cat $PULSE_RUNTIME_PATH/pid)");
    EXPECT_TRUE(becomes(std::nullopt));
    EXPECT_EQ(source.volume(Element::firstChannel), std::nullopt);
    EXPECT_EQ(source.report().mechanism, "no audio server");
    run("while pactl info >/dev/null 2>&1; do sleep 0.02; done; "
        "$CHIMEWERK_START_PULSEAUDIO");
    run("pactl set-sink-volume speaker 60%");
    EXPECT_TRUE(becomes(0.6F));
}

}  // namespace
}  // namespace chimewerk
