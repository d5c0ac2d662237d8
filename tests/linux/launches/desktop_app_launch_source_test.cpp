// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/desktop_app_launch_source.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "support/fake_user_manager.h"
#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "support/x11_client.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/child_process.h"

namespace chimewerk {
namespace {

/// Takes a bus name as a GTK application does, and shows a window on the bus when told to.
constexpr const char* kApplication = R"(
import os, sys
from gi.repository import Gio, GLib
name, told = sys.argv[1:3]
application = Gio.Application(application_id=name)
application.hold()
application.register(None)
def show_window():
    if not os.path.exists(told):
        return True
    path = "/" + name.replace(".", "/") + "/window/1"
    application.get_dbus_connection().export_action_group(path, Gio.SimpleActionGroup())
    return False
GLib.timeout_add(20, show_window)
GLib.MainLoop().run()
)";

/// The whole source, with real programs, and a fake user manager on the session's bus.
class TheDesktopsLaunches : public testing::Test {
protected:
    TheDesktopsLaunches() {
        std::filesystem::create_directory(data / "applications");
        write("applications/clock.desktop",
              "[Desktop Entry]\nType=Application\nName=Clock\nExec=xclock\n");
        setenv("XDG_DATA_DIRS", std::string(data.path()).c_str(), 1);
    }
    ~TheDesktopsLaunches() override { unsetenv("XDG_DATA_DIRS"); }
    void write(const std::string& file, const std::string& text) {
        std::ofstream(data / file) << text;
    }
    void observe() {
        source.emplace(queue,
                       SessionEnvironment{
                           .type = "x11", .waylandDisplay = "", .display = std::getenv("DISPLAY")});
        token = source->addObserver([this] { ++launches; });
        EXPECT_TRUE(runUntil(queue, [this] { return manager.subscriptions == 1; }));
    }
    bool launched(int times) {
        return runUntil(queue, [&] { return launches >= times; }) && launches == times;
    }
    /// Returns the launches after everything that has happened until now has been judged.
    int settled() {
        wakeUpsWithin(queue, 3 * AppLaunches::kShortestRun);
        return launches;
    }

    EpollMainQueue queue;
    TemporaryFolder data;
    FakeUserManager manager{queue};
    std::optional<DesktopAppLaunchSource> source;
    AppLaunchSource::Token token = 0;
    int launches = 0;
};

TEST_F(TheDesktopsLaunches, AreHeardOnceForAUnitAndItsWindow) {
    observe();
    ChildProcess clock({"xclock"});
    manager.start("app-gnome-clock-1.scope", {clock.id()});
    EXPECT_TRUE(launched(1));
    manager.start("app-org.chromium.Chromium-1.scope", {clock.id()});
    // What has no entry, and what ends at once.
    ChildProcess command({"sleep", "60"});
    manager.start("app-niri-sleep-2.scope", {command.id()});
    ChildProcess failing({"xclock", "-no-such-option"});
    manager.start("app-gnome-clock-3.scope", {failing.id()});
    EXPECT_EQ(settled(), 1);
}

TEST_F(TheDesktopsLaunches, AreHeardForATerminalAndWhatIsTypedThere) {
    observe();
    ChildProcess terminal({"xterm", "-e", "sh", "-c", "xclock; sleep 60"});
    EXPECT_TRUE(launched(2));
    EXPECT_EQ(settled(), 2);
}

TEST_F(TheDesktopsLaunches, AreHeardByTheNamesOfActivatableApplications) {
    const char* const activatable = "[Desktop Entry]\nType=Application\nDBusActivatable=true\n";
    write("applications/org.example.Editor.desktop", activatable);
    write("applications/org.example.Files.desktop", activatable);
    write("applications/org.example.Plain.desktop", "[Desktop Entry]\nType=Application\n");
    observe();
    const std::string told = data / "told";
    // The bus starts applications as services; what a user types in a terminal is none.
    const auto start = [&](const char* name, const char* option = "--gapplication-service") {
        return ChildProcess({"/usr/bin/python3", "-c", kApplication, name, told, option});
    };
    const ChildProcess plain = start("org.example.Plain");
    const ChildProcess files = start("org.example.Files");
    const ChildProcess editor = start("org.example.Editor", "a file");
    EXPECT_TRUE(launched(1));
    EXPECT_EQ(settled(), 1);
    write("told", "");
    EXPECT_TRUE(launched(2));
    EXPECT_EQ(settled(), 2);
}

TEST_F(TheDesktopsLaunches, AreHeardWhileThereAreObservers) {
    DesktopAppLaunchSource wayland(
        queue,
        {.type = "wayland", .waylandDisplay = "wayland-0", .display = std::getenv("DISPLAY")});
    int inWayland = 0;
    wayland.addObserver([&] { ++inWayland; });
    observe();
    const std::size_t before = openDescriptors();
    int second = 0;
    AppLaunchSource::Token other = 0;
    other = source->addObserver([&] {
        ++second;
        source->removeObserver(other);
    });
    ChildProcess one({"xclock"});
    EXPECT_TRUE(launched(1));
    ChildProcess two({"xclock"});
    EXPECT_TRUE(launched(2));
    EXPECT_EQ(second, 1);
    X11Client own;
    own.open();
    EXPECT_EQ(settled(), 2);
    source->removeObserver(token);
    source->removeObserver(token);
    EXPECT_LT(openDescriptors(), before);
    EXPECT_EQ(inWayland, 0);
}

}  // namespace
}  // namespace chimewerk
