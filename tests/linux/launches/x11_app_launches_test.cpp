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

    /// Opens a window, of this type if one is given, and with what `prepare` adds.
    xcb_window_t open(const char* type = nullptr,
                      const std::function<void(xcb_window_t)>& prepare = {}) {
        const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(server_)).data;
        const xcb_window_t window = xcb_generate_id(server_);
        xcb_create_window(server_, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 60, 60, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        if (type != nullptr) {
            set(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atom(type));
        }
        if (prepare) {
            prepare(window);
        }
        xcb_map_window(server_, window);
        xcb_flush(server_);
        opened_.push_back(window);
        return window;
    }
    /// Opens a window of a program that runs on another machine.
    xcb_window_t openFromElsewhere(xcb_window_t leader = XCB_NONE) {
        return open(nullptr, [this, leader](xcb_window_t window) {
            setText(window, "WM_CLIENT_MACHINE", XCB_ATOM_STRING, "elsewhere");
            if (leader != XCB_NONE) {
                set(window, "WM_CLIENT_LEADER", XCB_ATOM_WINDOW, leader);
            }
        });
    }
    void setText(xcb_window_t window, const char* property, xcb_atom_t type,
                 std::string_view text) {
        xcb_change_property(server_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
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

    xcb_atom_t atom(const char* name) {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            server_,
            xcb_intern_atom(server_, 0, static_cast<std::uint16_t>(std::string(name).size()), name),
            nullptr));
        return reply->atom;
    }

private:
    xcb_connection_t* const server_;
    std::vector<xcb_window_t> opened_;
};

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
        static Client markers;
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
    Client client;
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
    Client application(kDisplay);
    const auto leader = application.open();
    Client connection(kDisplay);
    Client otherConnection(kDisplay);
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
    Client another(kDisplay);
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
            std::deque<Client> clients;
            // Windows that exist when the server is found do not count.
            EXPECT_TRUE(runUntil(queue, [&] {
                Client& client = clients.emplace_back(kDisplay);
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
