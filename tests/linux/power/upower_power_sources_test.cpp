// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/power/upower_power_sources.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "support/dbusmock_service.h"
#include "support/fake_upower.h"
#include "support/private_bus.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

using Properties = FakeUPower::Properties;

const Properties kLaptopBattery{{"IsPresent", true}, {"Type", 2U}, {"Percentage", 50.0}};
const Properties kNoBattery{{"IsPresent", false}, {"Type", 0U}, {"Percentage", 0.0}};

/// A private system bus on which UPower comes and goes.
class ThePowerSources : public testing::Test {
protected:
    ThePowerSources() { EXPECT_TRUE(bus.start()); }

    void follow() {
        following = sources.subscribe(
            {.onKnown = [this] { note("known"); }, .onChange = [this] { note("change"); }});
    }
    void startUPower(bool onBattery, const Properties& device = kLaptopBattery) {
        upower.emplace(queue, Properties{{"OnBattery", onBattery}, {"DaemonVersion", "1"}}, device);
        ASSERT_TRUE(runUntil(queue, [this] { return upower->asked == 2 || !following; }));
    }
    void note(const std::string& what) { log << what << " " << shown() << "; "; }
    std::string shown() const {
        std::ostringstream text;
        if (const auto source = sources.first()) {
            text << (source->isOnBattery ? "battery " : "mains ");
            source->charge ? text << *source->charge : text << "?";
        } else {
            text << "none";
        }
        return text.str();
    }
    /// Returns the next callback, and all others since the last call.
    std::string takeLog() {
        EXPECT_TRUE(runUntil(queue, [this] { return !log.str().empty(); }));
        return std::exchange(log, std::ostringstream()).str();
    }
    /// Runs everything that is pending. Returns whether nothing was reported meanwhile.
    bool isQuiet() {
        while (wakeUpsWithin(queue, Seconds{0.1}) > 0) {
        }
        return log.str().empty();
    }

    PrivateBus bus{"DBUS_SYSTEM_BUS_ADDRESS"};
    EpollMainQueue queue;
    std::optional<FakeUPower> upower;
    std::ostringstream log;
    UPowerPowerSources sources{queue, kTestRetryInterval};
    std::unique_ptr<PowerSources::Subscription> following;
};

TEST_F(ThePowerSources, ReportEachChangeOnceAndTheStartSeparately) {
    startUPower(true);
    EXPECT_EQ(sources.report().mechanism, "no UPower");
    follow();
    EXPECT_EQ(shown(), "none");
    EXPECT_EQ(takeLog(), "known battery 50; ");
    EXPECT_EQ(sources.report(), SourceReport{.mechanism = "UPower, 50 %, on battery"});
    upower->changeDevice({{"Percentage", 49.0}});
    EXPECT_EQ(takeLog(), "change battery 49; ");
    upower->changeMachine({{"OnBattery", false}});
    upower->changeDevice({{"Percentage", 48.9}, {"State", 1U}});
    EXPECT_EQ(takeLog(), "change mains 48; ") << "as desktops show it";
    upower->changeMachine({{"OnBattery", false}, {"LidIsClosed", true}});
    upower->changeDevice({{"Percentage", 48.2}, {"TimeToFull", 1.0}, {"IconName", "battery"}});
    EXPECT_TRUE(isQuiet());
    EXPECT_EQ(upower->asked, 2);
    following.reset();
    upower->changeMachine({{"OnBattery", true}});
    EXPECT_TRUE(isQuiet());
    follow();
    EXPECT_EQ(log.str(), "known battery 48; ");
}

TEST_F(ThePowerSources, AreNoneOnAMachineWithoutBatteryUntilItGetsOne) {
    startUPower(false, kNoBattery);
    follow();
    EXPECT_TRUE(isQuiet());
    EXPECT_TRUE(sources.report().lacksHardware);
    upower->changeDevice({{"Percentage", 3.0}, {"Type", 1U}, {"IsPresent", true}});
    EXPECT_TRUE(isQuiet());
    upower->changeMachine({{"OnBattery", true}});
    upower->changeDevice({{"Type", 3U}});
    EXPECT_EQ(takeLog(), "known battery 3; ");
    upower->changeDevice({{"IsPresent", false}});
    EXPECT_EQ(takeLog(), "change none; ");
}

TEST_F(ThePowerSources, CountAsMainsWithoutAStateAndMayLackTheirCharge) {
    upower.emplace(queue, Properties{}, Properties{{"IsPresent", true}, {"Type", 2U}});
    follow();
    EXPECT_EQ(takeLog(), "known mains ?; ");
    upower->changeMachine({{"OnBattery", true}});
    upower->changeDevice({{"Percentage", "half"}});
    EXPECT_EQ(takeLog(), "change battery ?; ");
    upower->changeDevice({{"Percentage", 50.0}});
    EXPECT_EQ(takeLog(), "change battery 50; ");
}

TEST_F(ThePowerSources, KeepTheirStateWhileUPowerIsAwayAndReportOnlyChanges) {
    follow();
    EXPECT_TRUE(isQuiet());
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0);
    startUPower(true);
    EXPECT_EQ(takeLog(), "known battery 50; ");
    upower.reset();
    EXPECT_TRUE(isQuiet());
    EXPECT_EQ(shown(), "battery 50");
    startUPower(true);
    EXPECT_TRUE(isQuiet());
    upower.reset();
    // The signal of a change arrives before the full answer.
    upower.emplace(queue, Properties{{"OnBattery", false}}, kLaptopBattery).isSilent = true;
    EXPECT_TRUE(isQuiet());
    upower->changeDevice({{"Percentage", 7.0}});
    EXPECT_TRUE(isQuiet());
    upower.reset();
    startUPower(false, {{"IsPresent", true}, {"Type", 2U}});
    EXPECT_EQ(takeLog(), "change mains ?; ");
}

/// The bus starts UPower when it is called. Once stopped, it must stay stopped.
TEST_F(ThePowerSources, StartUPowerOnceAndNotAgainAfterItStopped) {
    const TemporaryFolder data;
    const std::string services = data / "dbus-1/services";
    std::filesystem::create_directories(services);
    std::ofstream(services + "/org.freedesktop.UPower.service")
        << "[D-BUS Service]\nName=org.freedesktop.UPower\nExec=/bin/sh -c \"echo >>"
        << data / "starts\"\n";
    const auto starts = [&] {
        std::error_code none;
        const auto size = std::filesystem::file_size(data / "starts", none);
        return none ? 0 : size;
    };
    bus.kill();
    const std::string before = std::getenv("XDG_DATA_HOME");
    setenv("XDG_DATA_HOME", data.path().c_str(), 1);
    ASSERT_TRUE(bus.start());
    setenv("XDG_DATA_HOME", before.c_str(), 1);
    follow();
    ASSERT_TRUE(runUntil(queue, [&] { return starts() == 1; }));
    startUPower(true);
    EXPECT_EQ(takeLog(), "known battery 50; ");
    upower.reset();
    EXPECT_TRUE(isQuiet());
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.3}), 0);
    EXPECT_EQ(starts(), 1U);
}

TEST_F(ThePowerSources, KeepTheirStateWhileTheBusIsAway) {
    startUPower(true);
    follow();
    EXPECT_EQ(takeLog(), "known battery 50; ");
    bus.kill();
    runReady(queue);
    EXPECT_EQ(shown(), "battery 50");
    upower->machine["OnBattery"] = false;
    upower->asked = 0;
    ASSERT_TRUE(bus.start());
    EXPECT_EQ(takeLog(), "change mains 50; ");
}

TEST_F(ThePowerSources, WorkWithAnIndependentFakeUPower) {
    follow();
    std::optional<DbusmockService> other;
    const auto comes = [&](bool onBattery) {
        other.emplace("upower", "org.freedesktop.UPower", "/org/freedesktop/UPower");
        ASSERT_TRUE(other->isThere());
        EXPECT_NE(other->call("org.freedesktop.DBus.Mock", "SetupDisplayDevice", "uuddddxxbsu", 2U,
                              2U, 50.0, 50.0, 100.0, 0.1, std::int64_t{3600}, std::int64_t{0}, 1,
                              "battery", 1U),
                  nullptr);
        EXPECT_NE(other->call("org.freedesktop.DBus.Properties", "Set", "ssv",
                              "org.freedesktop.UPower", "OnBattery", "b", onBattery ? 1 : 0),
                  nullptr);
    };
    comes(true);
    ASSERT_TRUE(runUntil(queue, [this] { return shown() == "battery 50"; })) << log.str();
    takeLog();
    other->kill();
    comes(true);
    EXPECT_TRUE(isQuiet());
    EXPECT_EQ(shown(), "battery 50");
}

}  // namespace
}  // namespace chimewerk
