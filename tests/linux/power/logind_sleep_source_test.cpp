// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/power/logind_sleep_source.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "monitors/power_events.h"
#include "support/dbusmock_service.h"
#include "support/fake_logind.h"
#include "support/fake_power_sources.h"
#include "support/open_descriptors.h"
#include "support/private_bus.h"
#include "support/run_queue.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

/// A private system bus on which logind comes and goes.
class TheSleep : public testing::Test {
protected:
    TheSleep() {
        EXPECT_TRUE(bus.start());
        source.registerHandler([this](std::uint32_t type, std::intptr_t argument) {
            log += type == kIOPMSystemWillSleep ? "sleep " : "wake ";
            lastArgument = argument;
        });
    }

    void startLogind() {
        logind.emplace(queue);
        ASSERT_TRUE(runUntil(queue, [this] { return logind->asked > 0; }));
    }
    /// Runs everything that is pending and returns the messages since the last call.
    std::string settle() {
        while (wakeUpsWithin(queue, Seconds{0.03}) > 0) {
        }
        return std::exchange(log, "");
    }
    std::string prepareForSleep(bool begins) {
        logind->prepareForSleep(begins);
        EXPECT_TRUE(runUntil(queue, [this] { return !log.empty(); }));
        return settle();
    }
    /// Returns the number of inhibitors held after the message with this argument is answered.
    std::size_t heldAfterAnswering(std::intptr_t argument) {
        source.allowPowerChange(argument);
        settle();
        return logind->held();
    }

    PrivateBus bus{"DBUS_SYSTEM_BUS_ADDRESS"};
    EpollMainQueue queue;
    std::optional<FakeLogind> logind;
    std::string log;
    std::intptr_t lastArgument = 0;
    LogindSleepSource source{queue, kTestRetryInterval};
};

TEST_F(TheSleep, WaitsForTheAnswerToItsMessageAndAgainAfterEachWake) {
    startLogind();
    EXPECT_EQ(logind->wanted, "sleep Chimewerk delay");
    for (int sleeps = 0; sleeps < 3; ++sleeps) {
        EXPECT_EQ(settle(), "");
        EXPECT_EQ(logind->held(), 1U);
        EXPECT_EQ(source.report(), SourceReport{.mechanism = "logind"});
        EXPECT_EQ(prepareForSleep(true), "sleep ");
        EXPECT_EQ(logind->held(), 1U);
        EXPECT_EQ(heldAfterAnswering(lastArgument), 0U);
        EXPECT_EQ(prepareForSleep(false), "wake ");
    }
    EXPECT_EQ(logind->asked, 4);
}

TEST_F(TheSleep, IgnoresAnswersToOtherMessages) {
    startLogind();
    prepareForSleep(true);
    const std::intptr_t first = lastArgument;
    EXPECT_EQ(prepareForSleep(false), "wake ");  // Cancelled before it was answered.
    EXPECT_EQ(heldAfterAnswering(first), 1U);
    EXPECT_EQ(prepareForSleep(true) + prepareForSleep(true), "sleep sleep ");
    EXPECT_EQ(heldAfterAnswering(first), 1U);
    EXPECT_EQ(heldAfterAnswering(first + 1), 0U);
    EXPECT_EQ(logind->asked, 1);
    prepareForSleep(false);
    EXPECT_EQ(logind->held(), 1U);
}

TEST_F(TheSleep, IsNotDelayedByAnInhibitorThatComesTooLate) {
    logind.emplace(queue).isSlow = true;
    ASSERT_TRUE(runUntil(queue, [this] { return logind->asked == 1; }));
    prepareForSleep(true);
    logind->answer();
    settle();
    EXPECT_EQ(logind->held(), 1U);
    EXPECT_EQ(heldAfterAnswering(lastArgument), 0U);
    prepareForSleep(false);
    prepareForSleep(true);
    source.allowPowerChange(lastArgument);
    logind->answer();
    settle();
    EXPECT_EQ(logind->held(), 0U);
    EXPECT_EQ(logind->asked, 2);
}

TEST_F(TheSleep, IsReportedWhenLogindComesLateAndReturns) {
    settle();
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0);
    const std::size_t pipes = openDescriptors("pipe:");
    for (int i = 0; i < 2; ++i) {
        startLogind();
        settle();
        EXPECT_EQ(logind->held(), 1U);
        EXPECT_EQ(prepareForSleep(true), "sleep ");
        logind.reset();
        settle();
        EXPECT_EQ(openDescriptors("pipe:"), pipes);
    }
}

TEST_F(TheSleep, IsNotDelayedWhileTheBusIsAway) {
    startLogind();
    settle();
    prepareForSleep(true);
    bus.kill();
    ASSERT_TRUE(runUntil(queue, [this] { return logind->held() == 0; }));
    ASSERT_TRUE(bus.start());
    ASSERT_TRUE(runUntil(queue, [this] { return logind->held() == 1; }));
    EXPECT_EQ(prepareForSleep(true), "sleep ");
    EXPECT_EQ(heldAfterAnswering(lastArgument), 0U);
}

TEST_F(TheSleep, BeginsNoSoonerThanAThirdOfASecondAfterItsMessage) {
    SoundLibrary library;
    FakePowerSources powerSources;
    PowerEvents power({.queue = queue,
                       .sounds = *library,
                       .system = source,
                       .powerSources = powerSources,
                       .restartAudio = [] {},
                       .restartKeyboardMonitor = [] {}});
    power.setupLidDetection();
    startLogind();
    settle();
    const auto begin = std::chrono::steady_clock::now();
    logind->prepareForSleep(true);
    ASSERT_TRUE(runUntil(queue, [this] { return logind->held() == 0; }));
    EXPECT_GE(Seconds(std::chrono::steady_clock::now() - begin), Seconds{0.35});
    EXPECT_EQ(library.event("lid_close").triggerCount, 1);
}

TEST_F(TheSleep, WaitsForTheAnswerWithAnIndependentFakeLogind) {
    DbusmockService other("logind", "org.freedesktop.login1", "/org/freedesktop/login1");
    ASSERT_TRUE(other.isThere());
    const auto held = [&] {
        const BusMessage list = other.call("org.freedesktop.login1.Manager", "ListInhibitors", "");
        int count = 0;
        EXPECT_NE(list, nullptr);
        sd_bus_message_enter_container(list.get(), 'a', "(ssssuu)");
        while (sd_bus_message_skip(list.get(), "(ssssuu)") > 0) {
            ++count;
        }
        return count;
    };
    const auto prepare = [&](int begins) {
        EXPECT_NE(
            other.call("org.freedesktop.DBus.Mock", "EmitSignal", "sssav",
                       "org.freedesktop.login1.Manager", "PrepareForSleep", "b", 1, "b", begins),
            nullptr);
    };
    ASSERT_TRUE(runUntil(queue, [&] { return held() == 1; }));
    prepare(1);
    ASSERT_TRUE(runUntil(queue, [&] { return log == "sleep "; }));
    source.allowPowerChange(lastArgument);
    ASSERT_TRUE(runUntil(queue, [&] { return held() == 0; }));
    prepare(0);
    ASSERT_TRUE(runUntil(queue, [&] { return log == "sleep wake " && held() == 1; }));
}

}  // namespace
}  // namespace chimewerk
