// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/power_events.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "support/fake_power_sources.h"
#include "support/fake_sleep_source.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

PowerSourceDescription battery(std::optional<double> percent) {
    return {.isOnBattery = true, .charge = percent};
}
PowerSourceDescription mains(std::optional<double> percent) {
    return {.isOnBattery = false, .charge = percent};
}

/// A machine whose charger, battery and sleep the test controls. Each event has its own file, so
/// that the sound identifies it; restarts are logged too.
class ThePowerEvents : public testing::Test {
protected:
    ThePowerEvents() {
        for (const char* const id :
             {"lid_close", "lid_open", "charger_connect", "charger_disconnect", "battery_low"}) {
            library.event(id).isEnabled = true;
            library.event(id).soundPath = id;
            library.sounds.addFile(id);
        }
    }

    /// Returns the sounds and restarts since the last call.
    std::string takeLog() {
        const auto& plays = library.sounds.plays();
        for (; played < plays.size(); ++played) {
            log += plays[played].source + " ";
        }
        return std::exchange(log, "");
    }
    /// Changes the first source and returns the sounds that follow.
    std::string after(std::optional<PowerSourceDescription> change) {
        powerSources.change(change);
        return takeLog();
    }
    std::string afterSending(std::int64_t messageType, std::intptr_t argument = 0) {
        system.send(messageType, argument);
        return takeLog();
    }
    void advance(double seconds) { library.queue.advance(Seconds{seconds}); }

    SoundLibrary library;
    FakeSleepSource system;
    FakePowerSources powerSources;
    std::string log;
    std::size_t played = 0;
    std::optional<PowerEvents> power{PowerEvents::Dependencies{
        .queue = library.queue,
        .sounds = *library,
        .system = system,
        .powerSources = powerSources,
        .restartAudio = [this] { logRestart("audio"); },
        .restartKeyboardMonitor = [this] { logRestart("keyboard"); },
    }};

private:
    void logRestart(const std::string& restart) { log = takeLog() + restart + " "; }
};

TEST_F(ThePowerEvents, PlayTheChargerAndTheLowBatteryOncePerDischarge) {
    powerSources.source = mains(50);
    power->setupPowerMonitoring();
    struct Step {
        PowerSourceDescription source;
        std::string log;
    };
    const Step steps[] = {
        {battery(50), "charger_disconnect "},
        {battery(21), ""},
        {battery(20), "battery_low "},
        {battery(19), ""},
        {battery(18), ""},
        {mains(18), "charger_connect "},
        {mains(19), ""},
        {battery(15), "charger_disconnect battery_low "},
        {battery(15), ""},
    };
    for (const Step& step : steps) {
        EXPECT_EQ(after(step.source), step.log) << step.source.isOnBattery << *step.source.charge;
    }
    library.event("battery_low").threshold = 10;
    power->resetBatteryLowFlag();
    EXPECT_EQ(after(battery(14)), "");
    EXPECT_EQ(after(battery(10)), "battery_low ");
}

TEST_F(ThePowerEvents, StartFromTheFirstKnownState) {
    for (const bool isKnown : {true, false}) {
        for (const auto& found : {battery(15), battery({}), mains(15)}) {
            power->wasOnBattery = power->batteryLowFired = false;
            powerSources.isKnown = isKnown;
            powerSources.source = found;
            power->setupPowerMonitoring();
            if (!isKnown) {
                EXPECT_FALSE(power->wasOnBattery);
                powerSources.makeKnown();
            }
            EXPECT_EQ(takeLog(), "");
            EXPECT_EQ(power->wasOnBattery, found.isOnBattery);
            EXPECT_EQ(after(found), found == battery(15) ? "battery_low " : "");
            power->stop();
        }
    }
}

TEST_F(ThePowerEvents, PlayNothingForMissingProperties) {
    power->setupPowerMonitoring();
    EXPECT_EQ(after({}), "");
    EXPECT_EQ(after(battery({})), "charger_disconnect ");
    EXPECT_EQ(after({}), "");
    EXPECT_EQ(after(battery(std::numeric_limits<double>::quiet_NaN())), "");
    EXPECT_EQ(after(battery(20.000001)), "");
    EXPECT_EQ(after(mains(5)), "charger_connect ");
    std::erase_if(library->events,
                  [](const SoundEvent& event) { return event.id == "battery_low"; });
    EXPECT_EQ(after(battery(5)), "charger_disconnect ");
    EXPECT_FALSE(power->batteryLowFired);
}

TEST_F(ThePowerEvents, FollowThePowerWhileTheirEventsAreOff) {
    for (const char* const id : {"charger_disconnect", "battery_low"}) {
        library.event(id).isEnabled = false;
    }
    power->setupPowerMonitoring();
    EXPECT_EQ(after(battery(15)), "");
    EXPECT_TRUE(power->wasOnBattery);
    EXPECT_TRUE(power->batteryLowFired);
    library.event("battery_low").isEnabled = true;
    EXPECT_EQ(after(battery(14)), "");
    EXPECT_EQ(after(mains(14)), "charger_connect ");
}

TEST_F(ThePowerEvents, DelayOnlySleepUntilTheSoundHasBegun) {
    power->setupLidDetection();
    EXPECT_EQ(afterSending(kIOPMSystemWillSleep, -7), "lid_close ");
    advance(0.349);
    EXPECT_TRUE(system.allowed.empty());
    advance(0.002);
    EXPECT_EQ(system.allowed, std::vector<std::intptr_t>{-7});
    system.allowed.clear();
    for (const std::int64_t other : {0xE0000270L, 0xE0000290L, 0x280L, 0L}) {
        EXPECT_EQ(afterSending(other, 9), "");
        EXPECT_EQ(std::exchange(system.allowed, {}), std::vector<std::intptr_t>{9}) << other;
    }
    system.send(kIOPMSystemWillPowerOn, 1);
    system.send(kIOPMSystemHasPoweredOn, 2);
    advance(10);
    EXPECT_EQ(takeLog(), "audio lid_open ");
    EXPECT_TRUE(system.allowed.empty());
}

TEST_F(ThePowerEvents, RestartTheMonitorsHalfASecondAfterTheWake) {
    power->setupLidDetection();
    for (const bool isKeyPressOn : {false, true}) {
        library.event("key_press").isEnabled = !isKeyPressOn;
        EXPECT_EQ(afterSending(kIOPMSystemHasPoweredOn), "");
        advance(0.499);
        EXPECT_EQ(takeLog(), "");
        library.event("key_press").isEnabled = isKeyPressOn;
        advance(0.002);
        EXPECT_EQ(takeLog(), isKeyPressOn ? "audio keyboard lid_open " : "audio lid_open ");
    }
}

TEST_F(ThePowerEvents, IgnorePowerSourcesButNotSleepWhenStopped) {
    powerSources.source = mains(50);
    power->setupLidDetection();
    power->setupPowerMonitoring();
    power->stop();
    EXPECT_FALSE(powerSources.isFollowed());
    EXPECT_EQ(after(battery(5)), "");
    EXPECT_EQ(afterSending(kIOPMSystemWillSleep), "lid_close ");
    system.send(kIOPMSystemHasPoweredOn);
    power.reset();
    system.send(kIOPMSystemWillSleep);
    advance(1);
    EXPECT_EQ(takeLog(), "");
    EXPECT_TRUE(system.allowed.empty());
}

}  // namespace
}  // namespace chimewerk
