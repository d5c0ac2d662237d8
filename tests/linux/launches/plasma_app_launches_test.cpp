// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/plasma_app_launches.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plasma-window-management-server.h"
#include "support/fake_compositor.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

constexpr std::uint32_t kSkipTaskbar = ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR;

/// Lists windows as KWin does.
class FakeKwin : public FakeCompositor {
public:
    struct Window {
        std::string application;
        std::uint32_t process = 0;
        std::uint32_t state = 0;
        std::uint32_t parent = 0;
    };

    FakeKwin(EpollMainQueue& queue, const std::string& path, std::uint32_t version = 16)
        : FakeCompositor(queue, path) {
        if (version > 0) {
            wl_global_create(display(), &org_kde_plasma_window_management_interface,
                             static_cast<int>(version), this, &bind);
        }
    }

    bool isBound() const { return management_ != nullptr; }
    void open(std::uint32_t id, const Window& window) {
        windows_[id] = window;
        if (management_ != nullptr) {
            org_kde_plasma_window_management_send_window(management_, id);
            flush();
        }
    }
    void close(std::uint32_t id) {
        org_kde_plasma_window_send_unmapped(resources_.at(id));
        flush();
        windows_.erase(id);
    }

private:
    static void bind(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
        static const auto kRequests = [] {
            struct org_kde_plasma_window_management_interface requests {};
            requests.get_window = &getWindow;
            return requests;
        }();
        auto& self = *static_cast<FakeKwin*>(data);
        // Later ones send each move of a window.
        EXPECT_EQ(version, 5U);
        self.management_ = wl_resource_create(client, &org_kde_plasma_window_management_interface,
                                              static_cast<int>(version), id);
        wl_resource_set_implementation(self.management_, &kRequests, data, nullptr);
        for (const auto& [window, facts] : self.windows_) {
            org_kde_plasma_window_management_send_window(self.management_, window);
        }
    }
    /// Sends the same events as KWin 5.27: one of them belongs to version 8.
    static void getWindow(wl_client* client, wl_resource* management, std::uint32_t id,
                          std::uint32_t number) {
        static const auto kRequests = [] {
            struct org_kde_plasma_window_interface requests {};
            requests.destroy = [](wl_client*, wl_resource* window) { wl_resource_destroy(window); };
            return requests;
        }();
        auto& self = *static_cast<FakeKwin*>(wl_resource_get_user_data(management));
        const Window& facts = self.windows_.at(number);
        auto* const window = wl_resource_create(client, &org_kde_plasma_window_interface,
                                                wl_resource_get_version(management), id);
        wl_resource_set_implementation(window, &kRequests, &self, nullptr);
        self.resources_[number] = window;
        org_kde_plasma_window_send_virtual_desktop_changed(window, 0);
        if (!facts.application.empty()) {
            org_kde_plasma_window_send_app_id_changed(window, facts.application.c_str());
        }
        if (facts.process != 0) {
            org_kde_plasma_window_send_pid_changed(window, facts.process);
        }
        org_kde_plasma_window_send_title_changed(window, "~ : bash");
        org_kde_plasma_window_send_state_changed(window, facts.state);
        org_kde_plasma_window_send_themed_icon_name_changed(window, "utilities-terminal");
        org_kde_plasma_window_send_parent_window(
            window, facts.parent == 0 ? nullptr : self.resources_.at(facts.parent));
        org_kde_plasma_window_send_virtual_desktop_entered(window,
                                                           "6f4b1c7e-5a0c-4a59-9c5d-2f1d0a6c7a11");
        org_kde_plasma_window_send_initial_state(window);
    }

    wl_resource* management_ = nullptr;
    std::map<std::uint32_t, Window> windows_;
    std::map<std::uint32_t, wl_resource*> resources_;
};

class TheWindowsOfPlasma : public testing::Test {
protected:
    void listen() {
        kwin.emplace(queue, path);
        kwin->open(1, {.application = "org.kde.plasmashell", .process = 50});
        kwin->open(2, {.application = "org.kde.dolphin", .process = 51});
    }
    /// Returns the signs since the last call, as "process application".
    std::vector<std::string> heard() {
        // Both ends of the socket are on this queue.
        runReady(queue);
        return std::exchange(signs, {});
    }

    using Signs = std::vector<std::string>;
    EpollMainQueue queue;
    TemporaryFolder folder;
    const std::string path = folder / "wayland-0";
    std::optional<FakeKwin> kwin;
    Signs signs;
    ToplevelLaunches::OnFirstWindow note = [this](const LaunchSign& sign) {
        EXPECT_EQ(sign.windowManager, getpid());
        signs.push_back(std::to_string(sign.processes.at(0)) + " " + sign.application);
    };
};

TEST_F(TheWindowsOfPlasma, AreSignsWhenTheyAreTheFirstOfAProcess) {
    listen();
    const PlasmaAppLaunches plasma(queue, path, note, Seconds{0.01});
    ASSERT_TRUE(runUntil(queue, [&] { return kwin->isBound(); }));
    EXPECT_EQ(heard(), Signs());
    EXPECT_TRUE(plasma.isHeard());
    kwin->open(3, {.application = "org.kde.konsole", .process = 60});
    EXPECT_EQ(heard(), Signs{"60 org.kde.konsole"});
    const std::pair<const char*, FakeKwin::Window> silent[] = {
        {"a second window", {.application = "org.kde.konsole", .process = 60}},
        {"one of a program that was open", {.application = "org.kde.dolphin", .process = 51}},
        {"a dialog", {.application = "org.kde.kdialog", .process = 61, .parent = 3}},
        {"one that no task bar shows", {.application = "", .process = 62, .state = kSkipTaskbar}},
        {"one of nobody", {.application = "org.kde.kcalc"}}};
    std::uint32_t id = 10;
    for (const auto& [what, window] : silent) {
        kwin->open(++id, window);
        EXPECT_EQ(heard(), Signs()) << what;
    }
    // A window that opens and closes while a program still runs, such as the test itself.
    const auto own = static_cast<std::uint32_t>(getpid());
    for (const bool isFirst : {true, false}) {
        kwin->open(20, {.application = "xterm", .process = own});
        EXPECT_EQ(heard(), isFirst ? Signs{std::to_string(own) + " xterm"} : Signs());
        kwin->close(20);
    }
}

TEST_F(TheWindowsOfPlasma, AreHeardAgainAfterALossAndFromAnEarlyStart) {
    const PlasmaAppLaunches plasma(queue, path, note, Seconds{0.01});
    for (const std::uint32_t process : {60U, 61U}) {
        EXPECT_FALSE(plasma.isHeard());
        listen();
        ASSERT_TRUE(runUntil(queue, [&] { return kwin->isBound(); }));
        EXPECT_EQ(heard(), Signs());
        kwin->open(3, {.application = "xterm", .process = process});
        EXPECT_EQ(heard(), Signs{std::to_string(process) + " xterm"});
        kwin.reset();
        heard();
    }
    // One that offers no list is left alone.
    kwin.emplace(queue, path, 0);
    EXPECT_TRUE(runUntil(queue, [&] { return kwin->hasClient(); }));
    EXPECT_TRUE(runUntil(queue, [&] { return !kwin->hasClient(); }));
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.1}), 0);
}

}  // namespace
}  // namespace chimewerk
