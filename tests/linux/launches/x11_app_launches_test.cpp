// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/x11_app_launches.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "linux/launches/desktop_app_launch_source.h"
#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "tools/process/child_process.h"

namespace chimewerk {
namespace {

/// An X11 client with its own windows.
class Client {
public:
    explicit Client(const char* display = nullptr) : server_(xcb_connect(display, nullptr)) {}
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    /// Returns once the server has removed the windows.
    ~Client() {
        for (const xcb_window_t window : opened_) {
            xcb_destroy_window(server_, window);
        }
        const XcbReply<xcb_get_input_focus_reply_t> answered(
            xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
        xcb_disconnect(server_);
    }

    /// Opens a window with this process ID, or without one for 0.
    xcb_window_t open(std::uint32_t process, const char* type = nullptr) {
        const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(server_)).data;
        const xcb_window_t window = xcb_generate_id(server_);
        xcb_create_window(server_, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 60, 60, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        if (process != 0) {
            set(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, process);
        }
        if (type != nullptr) {
            set(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atom(type));
        }
        xcb_map_window(server_, window);
        xcb_flush(server_);
        opened_.push_back(window);
        return window;
    }
    void set(xcb_window_t window, const char* property, xcb_atom_t type, std::uint32_t value) {
        xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32, 1,
                            &value);
        xcb_flush(server_);
    }
    void setClientList(const std::vector<xcb_window_t>& windows) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
        xcb_change_property(server_, XCB_PROP_MODE_REPLACE, root, atom("_NET_CLIENT_LIST"),
                            XCB_ATOM_WINDOW, 32, static_cast<std::uint32_t>(windows.size()),
                            windows.data());
        xcb_flush(server_);
    }
    /// Returns whether the window manager lists the window.
    bool isListed(xcb_window_t window) {
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
        const XcbReply<xcb_get_property_reply_t> list(xcb_get_property_reply(
            server_,
            xcb_get_property(server_, 0, root, atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, 0, 65536),
            nullptr));
        const auto* const windows =
            static_cast<const xcb_window_t*>(xcb_get_property_value(list.get()));
        return std::find(windows, windows + list->value_len, window) != windows + list->value_len;
    }
    void close(xcb_window_t window) {
        xcb_destroy_window(server_, window);
        xcb_flush(server_);
    }

private:
    xcb_atom_t atom(const char* name) {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            server_,
            xcb_intern_atom(server_, 0, static_cast<std::uint16_t>(std::string(name).size()), name),
            nullptr));
        return reply->atom;
    }

    xcb_connection_t* const server_;
    std::vector<xcb_window_t> opened_;
};

/// Uses the private session with its window manager.
class TheWindows : public testing::Test {
protected:
    void listen() {
        // Wait until the windows of an earlier test are off the list: their IDs are reused.
        launchesUntilNow();
        windows.emplace(queue, std::getenv("DISPLAY"),
                        X11AppLaunches::Callbacks{
                            .isReportedElsewhere = [](pid_t process) { return process == kInUnit; },
                            .onLaunch = [this] { ++launches; }});
    }
    bool launched(int times) {
        return runUntil(queue, [&] { return launches >= times; }) && launches == times;
    }
    /// Returns the launches since the last call, after the window manager has listed all
    /// opened windows.
    int launchesUntilNow() {
        // Keep one client for all calls, so that no window gets the ID of one that is still listed.
        static Client markers;
        const auto last = markers.open(ours());
        EXPECT_TRUE(runUntil(queue, [&] { return markers.isListed(last); }));
        markers.close(last);
        // The server notifies each client separately, so our notification may arrive shortly after
        // that of the marker window.
        wakeUpsWithin(queue, Seconds{0.03});
        return std::exchange(launches, 0);
    }
    static std::uint32_t ours() { return static_cast<std::uint32_t>(getpid()); }

    static constexpr pid_t kInUnit = 0x10000000;
    EpollMainQueue queue;
    int launches = 0;
    std::optional<X11AppLaunches> windows;
};

TEST_F(TheWindows, AreLaunchesWhenTheyAreTheFirstOfARealProgram) {
    ChildProcess before({"xclock"});
    ASSERT_TRUE(before.started());
    EXPECT_TRUE(runUntil(queue, [] {
        return std::system("xwininfo -name xclock 2>/dev/null | grep -q IsViewable") == 0;
    }));
    EXPECT_EQ(launchesUntilNow(), 0);
    listen();
    EXPECT_EQ(launchesUntilNow(), 0);
    ChildProcess clock({"xclock"});
    EXPECT_TRUE(launched(1));
    ChildProcess terminal({"xterm"});
    EXPECT_TRUE(launched(2));
    ChildProcess second({"xclock"});
    EXPECT_TRUE(launched(3));
    clock.end();
    EXPECT_EQ(launchesUntilNow(), 3);
}

TEST_F(TheWindows, AreNotLaunchesWhenTheirProcessIsKnownOrOursOrReportedElsewhere) {
    Client client;
    client.open(0x30000000);
    launchesUntilNow();
    listen();
    client.open(0x30000000);
    client.open(ours());
    client.open(static_cast<std::uint32_t>(kInUnit));
    const auto living = static_cast<std::uint32_t>(getppid());
    const auto first = client.open(living);
    EXPECT_EQ(launchesUntilNow(), 1);
    client.close(first);
    client.open(living);  // The process is still running, so this is no launch.
    client.open(0x30000001, "_NET_WM_WINDOW_TYPE_DOCK");
    client.open(0x30000002, "_NET_WM_WINDOW_TYPE_DIALOG");
    client.open(0x30000002);
    client.close(client.open(0x30000000));  // Closed before its facts can be read.
    EXPECT_EQ(launchesUntilNow(), 1);       // Only the one with the dialog.
}

TEST_F(TheWindows, AreReportedByTheDesktopSourceOfAnX11SessionWhileItHasObservers) {
    DesktopAppLaunchSource source(
        queue, {.type = "x11", .waylandDisplay = "", .display = std::getenv("DISPLAY")});
    DesktopAppLaunchSource wayland(
        queue,
        {.type = "wayland", .waylandDisplay = "wayland-0", .display = std::getenv("DISPLAY")});
    int inWayland = 0;
    wayland.addObserver([&] { ++inWayland; });
    Client client;
    client.open(0x30000003);
    launchesUntilNow();
    int first = 0;
    int second = 0;
    const std::size_t before = openDescriptors();
    const auto one = source.addObserver([&] { ++first; });
    AppLaunchSource::Token other = 0;
    other = source.addObserver([&] {
        ++second;
        source.removeObserver(other);
    });
    client.open(0x30000004);
    EXPECT_TRUE(runUntil(queue, [&] { return first == 1 && second == 1; }));
    client.open(0x30000005);
    EXPECT_TRUE(runUntil(queue, [&] { return first == 2; }));
    EXPECT_EQ(second, 1);
    source.removeObserver(one);
    source.removeObserver(one);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(inWayland, 0);
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
            queue, kDisplay,
            X11AppLaunches::Callbacks{.isReportedElsewhere = [](pid_t) { return false; },
                                      .onLaunch = [this] { ++launches; }},
            kRetry);
        runReady(queue);
    }

    static constexpr const char* kDisplay = ":4713";
    static constexpr Seconds kRetry{0.02};
    std::optional<ChildProcess> server;
};

TEST_F(TheWindowsOfARestartingServer, AreGroupedByTheirLeader) {
    startServer();
    listenThere();
    Client application(kDisplay);
    const auto leader = application.open(0);
    const auto ofLeader = [&](Client& client) {
        const auto window = client.open(0);
        client.set(window, "WM_CLIENT_LEADER", XCB_ATOM_WINDOW, leader);
        return window;
    };
    Client connection(kDisplay);
    Client otherConnection(kDisplay);
    const auto one = ofLeader(connection);
    connection.setClientList({one});
    EXPECT_TRUE(launched(1));
    const auto two = ofLeader(otherConnection);
    otherConnection.setClientList({one, two});
    const auto three = otherConnection.open(0);  // Has no leader.
    otherConnection.setClientList({one, two, three});
    EXPECT_TRUE(launched(2));
    otherConnection.setClientList({});
    otherConnection.setClientList({one});  // The leader still exists, and so does the application.
    application.set(leader, "_NET_WM_PID", XCB_ATOM_CARDINAL, ours());
    const auto four = ofLeader(application);
    application.setClientList({one, four});  // The leader now has the process ID of this test.
    const auto five = application.open(0x30000001);
    application.setClientList({one, four, five});
    EXPECT_TRUE(launched(3));
}

TEST_F(TheWindowsOfARestartingServer, AreReportedWhenTheServerComesLateAndReturns) {
    listenThere();
    for (int i = 0; i < 2; ++i) {
        EXPECT_LE(wakeUpsWithin(queue, 5 * kRetry), 10);  // It does not spin.
        launches = 0;
        startServer();
        {
            Client client(kDisplay);
            std::uint32_t process = 0x30000000;
            // Windows that exist when the server is found do not count.
            EXPECT_TRUE(runUntil(queue, [&] {
                client.setClientList({client.open(++process)});
                return launches > 0;
            }));
        }
        server->end(i == 0 ? SIGKILL : SIGTERM);
        runReady(queue);
    }
}

}  // namespace
}  // namespace chimewerk
