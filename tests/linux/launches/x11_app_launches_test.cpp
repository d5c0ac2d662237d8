// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/x11_app_launches.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/run_queue.h"
#include "support/x11_client.h"
#include "tools/process/child_process.h"

namespace chimewerk {
namespace {

/// Uses the private session with its window manager.
class TheWindows : public testing::Test {
protected:
    void listen() {
        // Wait until the windows of an earlier test are off the list: their IDs are reused.
        signsUntilNow();
        windows.emplace(queue, std::getenv("DISPLAY"),
                        [this](const LaunchSign& sign) { signs.push_back(sign); });
    }
    bool found(std::size_t many) {
        return runUntil(queue, [&] { return signs.size() >= many; }) && signs.size() == many;
    }
    /// Returns the signs since the last call, after the window manager has listed all opened
    /// windows.
    std::vector<LaunchSign> signsUntilNow() {
        // Keep one client for all calls, so that no window gets the ID of one that is still listed.
        static X11Client markers;
        const auto last = markers.open("_NET_WM_WINDOW_TYPE_DIALOG");
        EXPECT_TRUE(runUntil(queue, [&] { return markers.isListed(last); }));
        markers.close(last);
        // The server notifies each client separately, so our notification may arrive shortly after
        // that of the marker window.
        wakeUpsWithin(queue, Seconds{0.03});
        return std::exchange(signs, {});
    }

    EpollMainQueue queue;
    std::vector<LaunchSign> signs;
    std::optional<X11AppLaunches> windows;
};

TEST_F(TheWindows, AreSignsWhenTheyAreTheFirstOfARealProgram) {
    ChildProcess before({"xclock"});
    ASSERT_TRUE(before.started());
    EXPECT_TRUE(runUntil(queue, [] {
        return std::system("xwininfo -name xclock 2>/dev/null | grep -q IsViewable") == 0;
    }));
    listen();
    ChildProcess clock({"xclock"});
    EXPECT_TRUE(found(1));
    ChildProcess terminal({"xterm"});
    EXPECT_TRUE(found(2));
    clock.end();
    const auto all = signsUntilNow();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].processes, std::vector<pid_t>{clock.id()});
    EXPECT_EQ(all[0].application, "XClock");
    EXPECT_EQ(all[1].processes, std::vector<pid_t>{terminal.id()});
    // The window manager is what the session has started.
    std::ifstream name("/proc/" + std::to_string(all[1].windowManager) + "/comm");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(name), {}), "openbox\n");
}

TEST_F(TheWindows, AreSignsOnlyWhenTheUserWorksInThem) {
    listen();
    X11Client client;
    for (const char* type : {"_NET_WM_WINDOW_TYPE_DIALOG", "_NET_WM_WINDOW_TYPE_UTILITY",
                             "_NET_WM_WINDOW_TYPE_SPLASH", "_NET_WM_WINDOW_TYPE_NOTIFICATION"}) {
        client.open(type);
        EXPECT_TRUE(signsUntilNow().empty()) << type;
    }
    const auto states = client.open(nullptr, [&](xcb_window_t window) {
        client.set(window, "_NET_WM_STATE", XCB_ATOM_ATOM,
                   client.atom("_NET_WM_STATE_SKIP_TASKBAR"));
    });
    EXPECT_TRUE(signsUntilNow().empty());
    client.open(nullptr, [&](xcb_window_t window) {
        client.set(window, "WM_TRANSIENT_FOR", XCB_ATOM_WINDOW, states);
    });
    EXPECT_TRUE(signsUntilNow().empty());
    // The process says that it has a number that it has only in its sandbox.
    client.open(nullptr, [&](xcb_window_t window) {
        client.set(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, 2);
        client.setText(window, "WM_CLASS", XCB_ATOM_STRING, {"maps\0Maps\0", 10});
        client.setText(window, "_GTK_APPLICATION_ID", client.atom("UTF8_STRING"), "org.gnome.Maps");
    });
    const auto main = signsUntilNow();
    ASSERT_EQ(main.size(), 1U);
    EXPECT_EQ(main[0].processes, std::vector<pid_t>{getpid()});
    EXPECT_EQ(main[0].application, "org.gnome.Maps");
    client.open();
    EXPECT_TRUE(signsUntilNow().empty());
    client.openFromElsewhere();
    const auto remote = signsUntilNow();
    ASSERT_EQ(remote.size(), 1U);
    EXPECT_TRUE(remote[0].processes.empty());
}

/// A private X server that can be killed. The test keeps the window list itself, because a window
/// manager takes minutes for hundreds of windows.
class TheWindowsOfARestartingServer : public TheWindows {
protected:
    void startServer() {
        server.emplace(std::vector<std::string>{"Xvfb", kDisplay, "-screen", "0", "640x480x24",
                                                "-nolisten", "tcp", "-noreset"});
        ASSERT_TRUE(server->started());
        ASSERT_TRUE(runUntil(queue, [] { return isThere(); }));
    }
    static bool isThere() {
        xcb_connection_t* const connection = xcb_connect(kDisplay, nullptr);
        const bool there = xcb_connection_has_error(connection) == 0;
        xcb_disconnect(connection);
        return there;
    }
    void listenThere() {
        windows.emplace(
            queue, kDisplay, [this](const LaunchSign& sign) { signs.push_back(sign); }, kRetry);
        runReady(queue);
    }

    static constexpr const char* kDisplay = ":4713";
    static constexpr Seconds kRetry{0.02};
    std::optional<ChildProcess> server;
};

TEST_F(TheWindowsOfARestartingServer, AreGroupedByTheirLeaderWhenTheyComeFromElsewhere) {
    startServer();
    listenThere();
    X11Client application(kDisplay);
    const auto leader = application.open();
    X11Client connection(kDisplay);
    X11Client otherConnection(kDisplay);
    const auto one = connection.openFromElsewhere(leader);
    connection.setClientList({one});
    EXPECT_TRUE(found(1));
    const auto two = otherConnection.openFromElsewhere(leader);
    otherConnection.setClientList({one, two});
    const auto three = otherConnection.openFromElsewhere();
    otherConnection.setClientList({one, two, three});
    EXPECT_TRUE(found(2));
    otherConnection.setClientList({});
    otherConnection.setClientList({one});  // The leader still exists, and so does the application.
    X11Client another(kDisplay);
    another.setClientList({one, another.openFromElsewhere()});
    EXPECT_TRUE(found(3));
}

TEST_F(TheWindowsOfARestartingServer, AreReportedWhenTheServerComesLateAndReturns) {
    listenThere();
    for (int i = 0; i < 2; ++i) {
        EXPECT_LE(wakeUpsWithin(queue, 5 * kRetry), 10);  // It does not spin.
        signs.clear();
        startServer();
        {
            std::deque<X11Client> clients;
            // Windows that exist when the server is found do not count.
            EXPECT_TRUE(runUntil(queue, [&] {
                X11Client& client = clients.emplace_back(kDisplay);
                client.setClientList({client.openFromElsewhere()});
                return !signs.empty();
            }));
        }
        server->end(i == 0 ? SIGKILL : SIGTERM);
        runReady(queue);
    }
}

}  // namespace
}  // namespace chimewerk
