// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/app_unit.h"

#include <gtest/gtest.h>

namespace chimewerk {
namespace {

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
          Case{"app-gnome-google\\x2dchrome-1234.scope", true, "gnome", "google-chrome", false},
          Case{"app-gnome-some\\x2dname@0a1b.service", true, "gnome", "some-name", false},
          Case{"app-nm\\x2dapplet@autostart.service", true, "", "nm-applet", true},
          Case{"app-niri-bad\\x2-5.scope", true, "niri", "bad\\x2", false},
          Case{"snap.firefox.firefox-0f8e5bb4-5a1e-4b59-a5a3-2ac18b4f5f0b.scope", true, "snap",
               "firefox_firefox", false},
          Case{"snap.a.b.0f8e5bb4-5a1e-4b59-a5a3-2ac18b4f5f0b.scope", true, "snap", "a_b", false},
          Case{"snap.lxd.daemon.service", false, "", "", false},
          Case{"snap.a.scope", false, "", "", false},
          Case{"dbus-:1.2-org.gnome.Nautilus@0.service", false, "", "", false},
          Case{"app-plain.service", true, "", "plain", false},
          Case{"app-4711.scope", true, "", "4711", false},
          Case{"app-.scope", true, "", "", false},
          Case{"app-firefox@.service", false, "", "", false},
          Case{"app-firefox.slice", false, "", "", false},
          Case{"app.slice", false, "", "", false},
          Case{"dbus.service", false, "", "", false},
          Case{"myapp-x-1.scope", false, "", "", false},
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

TEST(AControlGroup, SaysWhatAProcessBelongsTo) {
    const std::string user = "0::/user.slice/user-1000.slice/user@1000.service/";
    struct Case {
        std::string text;
        std::string appUnit;
        /// Some of "session", "bus" and "service".
        std::string parts;
    };
    for (const Case& c :
         {Case{user + "app.slice/app-gnome-maps-1.scope\n", "app-gnome-maps-1.scope", ""},
          Case{"1:name=systemd:/a/app-maps@1.service\n0::/a\n", "app-maps@1.service", ""},
          Case{user + "app.slice/app-maps-1.scope/inner\n", "app-maps-1.scope", ""},
          Case{"0::/user.slice/user-1000.slice/session-2.scope\n", "", ""},
          Case{user + "app.slice/app-org.gnome.Terminal.slice/vte-spawn-0a1b.scope\n", "", ""},
          Case{user + "app.slice/xdg-desktop-portal-gnome.service\n", "", "service"},
          Case{user + "session.slice/plasma-ksmserver.service\n", "", "session service"},
          Case{user + "background.slice/plasma-krunner.service", "", "session service"},
          Case{user + "session.slice/dbus.service\n", "", "session bus service"},
          Case{user + "session.slice/dbus-broker.service\n", "", "session bus service"},
          Case{user + "app.slice/dbus-:1.2-org.gnome.Nautilus@0.service\n", "", "bus service"},
          Case{"0::/\n", "", ""}, Case{"", "", ""}}) {
        const ControlGroup group = ControlGroup::parse(c.text);
        EXPECT_EQ(group.appUnit, c.appUnit) << c.text;
        EXPECT_EQ(group.isPartOfSession, c.parts.find("session") != std::string::npos) << c.text;
        EXPECT_EQ(group.isOfBus, c.parts.find("bus") != std::string::npos) << c.text;
        EXPECT_EQ(group.isOfService, c.parts.find("service") != std::string::npos) << c.text;
    }
}

}  // namespace
}  // namespace chimewerk
