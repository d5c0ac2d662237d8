#include "monitors/app_launch_monitor.h"

#include <gtest/gtest.h>

#include <optional>

#include "support/fake_app_launch_source.h"

namespace chimewerk {
namespace {

TEST(TheAppLaunchMonitor, ReportsEachLaunchWhileItRuns) {
    FakeAppLaunchSource apps;
    AppLaunchMonitor monitor(apps);
    int launches = 0;
    monitor.onLaunch = [&] { ++launches; };
    apps.launch();
    monitor.start();
    apps.launch();
    apps.launch();
    EXPECT_EQ(launches, 2);
    monitor.stop();
    monitor.stop();
    apps.launch();
    EXPECT_EQ(launches, 2);
    EXPECT_EQ(apps.observers(), 0U);
    monitor.start();
    apps.launch();
    EXPECT_EQ(launches, 3);
}

TEST(TheAppLaunchMonitor, NeedsNoCallbackAndMayEndBeforeTheSource) {
    FakeAppLaunchSource apps;
    std::optional<AppLaunchMonitor> monitor(std::in_place, apps);
    monitor->start();
    apps.launch();
    int launches = 0;
    monitor->onLaunch = [&] { ++launches; };
    monitor.reset();
    apps.launch();
    EXPECT_EQ(launches, 0);
}

}  // namespace
}  // namespace chimewerk
