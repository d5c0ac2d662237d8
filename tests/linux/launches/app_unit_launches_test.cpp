// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/app_unit_launches.h"

#include <gtest/gtest.h>

namespace chimewerk {
namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

TEST(AnAppUnit, IsRecognizedByItsName) {
    struct Case {
        const char* name;
        bool isOne;
        const char* launcher;
        const char* application;
        bool autostarted;
    };
    for (const Case& c :
         {Case{"app-gnome-org.gnome.Maps-4711.scope", true, "gnome", "org.gnome.Maps", false},
          Case{"app-flatpak-org.gnome.Maps-4712.scope", true, "flatpak", "org.gnome.Maps", false},
          Case{"app-org.kde.konsole-0a1b.scope", true, "", "org.kde.konsole", false},
          Case{"app-firefox@0a1b.service", true, "", "firefox", false},
          Case{"app-gnome-some\\x2dname@0a1b.service", true, "gnome", "some\\x2dname", false},
          Case{"app-nm\\x2dapplet@autostart.service", true, "", "nm\\x2dapplet", true},
          Case{"app-plain.service", true, "", "plain", false},
          Case{"app-4711.scope", true, "", "4711", false}, Case{"app-.scope", true, "", "", false},
          Case{"app-firefox@.service", false, "", "", false},
          Case{"app-firefox.slice", false, "", "", false}, Case{"app.slice", false, "", "", false},
          Case{"dbus.service", false, "", "", false}, Case{"myapp-x-1.scope", false, "", "", false},
          Case{"", false, "", "", false}}) {
        ASSERT_EQ(AppUnit::isOne(c.name), c.isOne) << c.name;
        if (c.isOne) {
            const AppUnit unit = AppUnit::parse(c.name);
            EXPECT_EQ(unit.launcher, c.launcher) << c.name;
            EXPECT_EQ(unit.application, c.application) << c.name;
            EXPECT_EQ(unit.autostarted, c.autostarted) << c.name;
        }
    }
}

TEST(AnAppUnit, IsFoundInTheControlGroupsOfAProcess) {
    struct Case {
        const char* cgroups;
        bool isIn;
    };
    for (const Case& c :
         {Case{
              "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-gnome-maps-1.scope\n",
              true},
          Case{"1:name=systemd:/a/app-maps@1.service\n0::/a\n", true},
          Case{"0::/user.slice/app.slice/app-maps-1.scope/inner\n", true},
          Case{"0::/user.slice/user-1000.slice/session-2.scope\n", false},
          Case{"0::/user.slice/app.slice/myapp-maps-1.scope\n", false},
          Case{"0::/user.slice/app.slice/app-maps-1.slice\n", false}, Case{"0::/\n", false},
          Case{"", false}}) {
        EXPECT_EQ(isInAppUnit(c.cgroups), c.isIn) << c.cgroups;
    }
}

class TheAppUnitLaunches : public testing::Test {
protected:
    TheAppUnitLaunches() { launches.begin(seconds(100)); }
    bool launch(const std::string& unit, microseconds since) {
        return launches.isLaunch(unit, since);
    }

    AppUnitLaunches launches;
};

TEST_F(TheAppUnitLaunches, CountEachActivationOnceAndNoneFromBeforeTheBeginning) {
    const std::string maps = "app-gnome-maps-1.scope";
    EXPECT_FALSE(launch("app-gnome-old-1.scope", seconds(90)));
    EXPECT_FALSE(launch(maps, seconds(0)));  // Not active yet.
    EXPECT_TRUE(launch(maps, seconds(101)));
    EXPECT_FALSE(launch(maps, seconds(101)));  // Another job of the running unit, or its stop.
    EXPECT_TRUE(launch(maps, seconds(102)));
    EXPECT_TRUE(launch("app-gnome-maps-2.scope", seconds(103)));
    EXPECT_FALSE(launch("app-nm\\x2dapplet@autostart.service", seconds(104)));
    EXPECT_FALSE(launch("dbus.service", seconds(105)));
    launches.begin(seconds(200));  // The manager was restarted.
    EXPECT_FALSE(launch("app-gnome-maps-3.scope", seconds(150)));
}

TEST_F(TheAppUnitLaunches, CountASandboxAndItsApplicationOnce) {
    EXPECT_TRUE(launch("app-gnome-org.gnome.Maps-1.scope", seconds(101)));
    EXPECT_FALSE(launch("app-flatpak-org.gnome.Maps-2.scope", seconds(102)));
    // Started from a terminal.
    EXPECT_TRUE(launch("app-flatpak-org.gnome.Maps-3.scope", seconds(103)));
    EXPECT_TRUE(launch("app-gnome-org.gnome.Maps-4.scope", seconds(104)));
    EXPECT_TRUE(launch("app-flatpak-org.gnome.Clocks-5.scope", seconds(105)));
    EXPECT_TRUE(launch("app-gnome-org.gnome.Maps-6.scope", seconds(106)));
    EXPECT_TRUE(launch("app-flatpak-org.gnome.Maps-7.scope", seconds(120)));
}

TEST_F(TheAppUnitLaunches, RememberOnlyLoadedUnits) {
    for (int i = 0; i < 500; ++i) {
        const std::string unit = "app-gnome-maps-" + std::to_string(i) + ".scope";
        EXPECT_TRUE(launch(unit, seconds(101 + i)));
        launches.forget(unit);
    }
    EXPECT_EQ(launches.remembered(), 0U);
}

}  // namespace
}  // namespace chimewerk
