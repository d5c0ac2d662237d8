// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/sway_app_launches.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

constexpr std::uint32_t kSubscribe = 2;
constexpr std::uint32_t kTree = 4;
constexpr std::uint32_t kWindow = 0x80000003;

/// What sway 1.7 sends, without the members that are only about places.
constexpr const char* kFoot =
    R"({ "change": "new", "container": { "id": 5, "type": "con", "orientation": "none", "percent": 0.0, )"
    R"("name": null, "window": null, "nodes": [ ], "floating_nodes": [ ], "pid": 185, "app_id": "foot", )"
    R"("visible": true, "shell": "xdg_shell" } })";
constexpr const char* kXterm =
    R"({ "change": "new", "container": { "id": 6, "type": "con", "name": null, "window": 4194316, )"
    R"("nodes": [ ], "floating_nodes": [ ], "pid": 209, "app_id": null, "shell": "xwayland", )"
    R"("window_properties": { "class": "XTerm", "instance": "xterm", "transient_for": null } } })";

/// Speaks for sway, as the test tells it.
class TheWindowsOfSway : public testing::Test {
protected:
    TheWindowsOfSway() { listen(); }

    void listen() {
        listener = FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        path.copy(&address.sun_path[0], path.size());
        EXPECT_EQ(bind(listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(listener.get(), 1), 0);
    }
    /// Accepts the program, reads its two requests and answers them.
    void accept(const std::string& tree) {
        const auto arrived = [this] {
            pollfd ready{.fd = listener.get(), .events = POLLIN, .revents = 0};
            return poll(&ready, 1, 0) > 0;
        };
        ASSERT_TRUE(runUntil(queue, arrived));
        connection = FileDescriptor(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
        const std::string wanted = message(kSubscribe, R"(["window"])") + message(kTree, "");
        std::string asked(wanted.size(), '\0');
        ASSERT_EQ(recv(connection.get(), asked.data(), asked.size(), MSG_WAITALL),
                  static_cast<ssize_t>(asked.size()));
        EXPECT_EQ(asked, wanted);
        write(message(kSubscribe, R"({ "success": true })") + message(kTree, tree));
    }
    static std::string message(std::uint32_t type, const std::string& text) {
        const std::array<std::uint32_t, 2> numbers{static_cast<std::uint32_t>(text.size()), type};
        return "i3-ipc" + std::string(reinterpret_cast<const char*>(numbers.data()), 8) + text;
    }
    void write(const std::string& bytes) {
        EXPECT_EQ(send(connection.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }
    void tell(const std::string& event) { write(message(kWindow, event)); }
    /// Returns the signs since the last call, as "process application".
    std::vector<std::string> heard() {
        runReady(queue);
        return std::exchange(signs, {});
    }

    EpollMainQueue queue;
    TemporaryFolder folder;
    const std::string path = folder / "sway-ipc.1000.169.sock";
    FileDescriptor listener;
    FileDescriptor connection;
    std::vector<std::string> signs;
    ToplevelLaunches::OnFirstWindow note = [this](const LaunchSign& sign) {
        EXPECT_EQ(sign.windowManager, getpid());
        signs.push_back(std::to_string(sign.processes.at(0)) + " " + sign.application);
    };
};

TEST_F(TheWindowsOfSway, AreSignsWhenTheyAreTheFirstOfAProcess) {
    const SwayAppLaunches sway(queue, path, note, Seconds{0.01});
    // A workspace with a terminal, and a floating window in it.
    accept(
        R"({ "id": 1, "type": "root", "nodes": [ { "id": 3, "type": "output", "nodes": [ { "id": 4, )"
        R"("type": "workspace", "nodes": [ { "id": 9, "pid": 70, "app_id": "foot", "nodes": [ ] } ], )"
        R"("floating_nodes": [ { "id": 10, "pid": 71, "app_id": "mpv" } ] } ] } ] })");
    EXPECT_EQ(heard(), std::vector<std::string>());
    tell(kFoot);
    tell(R"({ "change": "title", "container": { "id": 5, "pid": 185, "app_id": "foot" } })");
    EXPECT_EQ(heard(), std::vector<std::string>{"185 foot"});
    // In pieces.
    const std::string xterm = message(kWindow, kXterm);
    write(xterm.substr(0, 9));
    EXPECT_EQ(heard(), std::vector<std::string>());
    write(xterm.substr(9));
    EXPECT_EQ(heard(), std::vector<std::string>{"209 XTerm"});
    const std::string container = R"({ "change": "new", "container": )";
    const std::string silent[] = {
        container + R"({ "id": 11, "pid": 185, "app_id": "foot" } })",
        container + R"({ "id": 12, "pid": 70, "app_id": "foot" } })",
        container + R"({ "id": 13, "pid": 300, "app_id": null, "window_properties": )" +
            R"({ "class": "Gimp", "transient_for": 4194316 } } })",
        container + R"({ "id": 14, "app_id": "nobody" } })",
        container + R"({ "id": "x", "pid": -1, "app_id": 7 } })",
        "[ 1 ]",
        "{"};
    for (const std::string& later : silent) {
        tell(later);
        EXPECT_EQ(heard(), std::vector<std::string>()) << later;
    }
}

TEST_F(TheWindowsOfSway, AreHeardAgainAfterALoss) {
    std::filesystem::remove(path);
    const SwayAppLaunches sway(queue, path, note, Seconds{0.01});
    listen();
    for (const char* const end : {"", "no message of sway's"}) {
        accept(R"({ "nodes": [ ] })");
        tell(kFoot);
        EXPECT_EQ(heard(), std::vector<std::string>{"185 foot"});
        write(end);
        if (*end == '\0') {
            connection = FileDescriptor();
        }
    }
    accept(R"({ "nodes": [ { "id": 5, "pid": 185, "app_id": "foot" } ] })");
    tell(kFoot);
    EXPECT_EQ(heard(), std::vector<std::string>());
}

}  // namespace
}  // namespace chimewerk
