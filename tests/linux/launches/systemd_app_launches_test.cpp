// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/systemd_app_launches.h"

#include <gmock/gmock.h>

#include <csignal>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/fake_user_manager.h"
#include "support/private_bus.h"
#include "support/run_queue.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kMaps = "app-gnome-org.gnome.Maps-4711.scope";
constexpr const char* kFirefox = "app-firefox@0a1b.service";

/// A private session bus that can be killed.
class TheUnits : public testing::Test {
protected:
    void startBus() { ASSERT_TRUE(bus.start()); }
    void listen() {
        units.emplace(
            queue, [this](const LaunchSign& sign) { started.push_back(sign.unit); },
            kTestRetryInterval);
    }
    /// Starts the manager and waits until the source has subscribed to it.
    void startManager() {
        manager.emplace(queue);
        ASSERT_TRUE(runUntil(queue, [this] { return manager->subscriptions == 1; }));
    }
    /// Returns the units reported since the last call, after one that the manager starts now.
    std::vector<std::string> reported() {
        manager->start("app-last.service", {1});
        EXPECT_TRUE(runUntil(
            queue, [this] { return !started.empty() && started.back() == "app-last.service"; }));
        started.pop_back();
        return std::exchange(started, {});
    }

    PrivateBus bus{"DBUS_SESSION_BUS_ADDRESS"};
    EpollMainQueue queue;
    std::vector<std::string> started;
    std::optional<SystemdAppLaunches> units;
    std::optional<FakeUserManager> manager;
};

TEST_F(TheUnits, AreReportedWithTheProcessesThatTheyHold) {
    startBus();
    std::vector<pid_t> processes;
    units.emplace(
        queue, [&](const LaunchSign& sign) { processes = sign.processes; }, kTestRetryInterval);
    startManager();
    manager->start(kMaps, {4711, 4713});
    EXPECT_TRUE(runUntil(queue, [&] { return !processes.empty(); }));
    EXPECT_THAT(processes, ElementsAre(4711, 4713));
}

TEST_F(TheUnits, AreReportedWhenTheyHoldProcessesAfterAJob) {
    startBus();
    listen();
    startManager();
    manager->start(kMaps, {4711});
    manager->start(kFirefox, {4712});
    EXPECT_THAT(reported(), ElementsAre(kMaps, kFirefox));
    manager->stop(kMaps);
    manager->start("app-empty.service", {});
    manager->reportJobEnd("app-failing.service", "failed");
    manager->reportJobEnd(kFirefox, "canceled");
    manager->start("dbus.service", {1});
    manager->start("app-firefox.slice", {1});
    EXPECT_THAT(reported(), IsEmpty());
    manager->start("app-short.scope", {4714});
    runReady(queue);
    manager->stop("app-short.scope");
    manager->start(kMaps, {4715});
    EXPECT_THAT(reported(), ElementsAre(kMaps));
}

TEST_F(TheUnits, AreReportedWhenTheManagerComesLateAndReturns) {
    startBus();
    listen();
    while (wakeUpsWithin(queue, Seconds{0.05}) > 0) {
    }
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0);
    for (int i = 0; i < 2; ++i) {
        startManager();
        manager->start(kMaps, {4711});
        EXPECT_THAT(reported(), ElementsAre(kMaps));
        manager.reset();
        runReady(queue);
    }
}

TEST_F(TheUnits, AreReportedWhenTheBusComesLateAndReturns) {
    listen();
    for (const int killedBy : {SIGTERM, SIGKILL}) {
        EXPECT_LE(wakeUpsWithin(queue, 5 * kTestRetryInterval), 10);  // It does not spin.
        startBus();
        startManager();
        manager->start(kMaps, {4711});
        EXPECT_THAT(reported(), ElementsAre(kMaps));
        manager->start(kFirefox, {4712});
        runReady(queue);
        manager.reset();
        bus.kill(killedBy);
        wakeUpsWithin(queue, 2 * AppLaunches::kShortestRun);
        EXPECT_THAT(started, IsEmpty());  // Nobody was left to be asked.
    }
}

}  // namespace
}  // namespace chimewerk
