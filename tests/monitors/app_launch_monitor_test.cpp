// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/app_launch_monitor.h"

#include <gtest/gtest.h>

#include "support/fake_sources.h"

namespace chimewerk {
namespace {

TEST(TheAppLaunchMonitor, ReportsEachLaunchWhileItRuns) {
    FakeAppLaunchSource apps;
    AppLaunchMonitor monitor(apps);
    int launches = 0;
    monitor.start();
    apps.launch();  // No callback is set.
    monitor.onLaunch = [&] { ++launches; };
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

}  // namespace
}  // namespace chimewerk
