// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/systemd_app_launches.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <string>
#include <utility>

#include "support/fake_user_manager.h"
#include "support/private_bus.h"
#include "support/run_queue.h"

namespace chimewerk {
namespace {

constexpr const char* kMaps = "app-gnome-org.gnome.Maps-4711.scope";

/// A private session bus that can be killed.
class TheUnits : public testing::Test {
protected:
    void startBus() { ASSERT_TRUE(bus.start()); }
    void listen() {
        units.emplace(
            queue, [this] { ++launches; }, kTestRetryInterval);
    }
    /// Starts the manager and waits until the source has subscribed to it.
    void startManager() {
        manager.emplace(queue);
        ASSERT_TRUE(runUntil(queue, [this] { return units->isSubscribed(); }));
    }
    /// Returns the launches since the last call, after all signals and answers have arrived.
    int launched() {
        while (wakeUpsWithin(queue, Seconds{0.05}) > 0) {
        }
        return std::exchange(launches, 0);
    }

    PrivateBus bus{"DBUS_SESSION_BUS_ADDRESS"};
    EpollMainQueue queue;
    int launches = 0;
    std::optional<SystemdAppLaunches> units;
    std::optional<FakeUserManager> manager;
};

TEST_F(TheUnits, AreLaunchesOnlyWhenStarted) {
    startBus();
    listen();
    startManager();
    EXPECT_EQ(launched(), 0);
    manager->start(kMaps);
    manager->start("app-firefox@0a1b.service");
    EXPECT_EQ(launched(), 2);
    manager->reportJobEnd(kMaps, "done");  // It was already running, or it was stopped.
    manager->reportNewUnit("app-loaded.service");
    manager->reportJobEnd("app-unknown.service", "done");
    manager->reportJobEnd("app-failing.service", "failed");
    manager->start("dbus.service");
    manager->start("app-firefox.slice");
    manager->start("app-nm\\x2dapplet@autostart.service");
    EXPECT_EQ(launched(), 0);
    manager->start(kMaps);  // Started again after it had ended.
    EXPECT_EQ(launched(), 1);
}

TEST_F(TheUnits, DoNotCountWhenTheyWereRunningBefore) {
    startBus();
    manager.emplace(queue);
    launched();
    manager->start(kMaps);
    runReady(queue);
    listen();
    ASSERT_TRUE(runUntil(queue, [this] { return units->isSubscribed(); }));
    manager->reportJobEnd(kMaps, "done");
    EXPECT_EQ(launched(), 0);
}

TEST_F(TheUnits, AreReportedWhenTheManagerComesLateAndReturns) {
    startBus();
    listen();
    launched();
    EXPECT_FALSE(units->isSubscribed());
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0);
    startManager();
    manager->start(kMaps);
    EXPECT_EQ(launched(), 1);
    manager.reset();
    EXPECT_TRUE(runUntil(queue, [this] { return !units->isSubscribed(); }));
    startManager();
    EXPECT_EQ(manager->subscriptions, 1);
    manager->start(kMaps);
    EXPECT_EQ(launched(), 1);
}

TEST_F(TheUnits, AreReportedWhenTheBusComesLateAndReturns) {
    listen();
    for (const int killedBy : {SIGTERM, SIGKILL}) {
        EXPECT_FALSE(units->isSubscribed());
        EXPECT_LE(wakeUpsWithin(queue, 5 * kTestRetryInterval), 10);  // It does not spin.
        startBus();
        startManager();
        manager->start(kMaps);
        EXPECT_EQ(launched(), 1);
        manager.reset();
        bus.kill(killedBy);
        EXPECT_TRUE(runUntil(queue, [this] { return !units->isSubscribed(); }));
    }
}

}  // namespace
}  // namespace chimewerk
