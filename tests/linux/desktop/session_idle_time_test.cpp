// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/session_idle_time.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

#include "ext-idle-notify-v1-server.h"
#include "idle-server.h"
#include "support/fake_bus_service.h"
#include "support/fake_compositor.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

using std::chrono::milliseconds;

/// Has one method, which returns a number of this type.
class FakeIdleMonitor final : public FakeBusService {
public:
    FakeIdleMonitor(EpollMainQueue& queue, const char* name, const char* path,
                    const char* interface, const char* method, const char* type)
        : FakeBusService(queue, sd_bus_open_user, name, path),
          interface_(interface),
          method_(method),
          type_(type) {}

    /// Answers with an error if there is none.
    std::optional<std::uint32_t> idle = 0;
    int calls = 0;

private:
    int answer(sd_bus_message* call) override {
        if (sd_bus_message_is_method_call(call, interface_, method_) == 0) {
            return 0;
        }
        ++calls;
        if (!idle) {
            return sd_bus_reply_method_errorf(call, "org.freedesktop.DBus.Error.Failed", "no");
        }
        return *type_ == 't' ? sd_bus_reply_method_return(call, "t", std::uint64_t{*idle})
                             : sd_bus_reply_method_return(call, "u", *idle);
    }

    const char* const interface_;
    const char* const method_;
    const char* const type_;
};

/// Tells of idleness as KWin 5.27 or sway 1.7 does.
class FakeIdleCompositor final : public FakeSeatCompositor {
public:
    enum class Kind { none, ext, kde };

    FakeIdleCompositor(EpollMainQueue& queue, const std::string& path, Kind kind)
        : FakeSeatCompositor(queue, path), kind_(kind) {
        if (kind == Kind::ext) {
            wl_global_create(display(), &ext_idle_notifier_v1_interface, 1, this, &bindExt);
        } else if (kind == Kind::kde) {
            wl_global_create(display(), &org_kde_kwin_idle_interface, 1, this, &bindKde);
        }
    }

    bool isAsked() const { return notification_ != nullptr; }
    void setIdle(bool idle) {
        if (kind_ == Kind::kde) {
            idle ? org_kde_kwin_idle_timeout_send_idle(notification_)
                 : org_kde_kwin_idle_timeout_send_resumed(notification_);
        } else {
            idle ? ext_idle_notification_v1_send_idled(notification_)
                 : ext_idle_notification_v1_send_resumed(notification_);
        }
        flush();
    }

private:
    static void bindExt(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
        // Later versions of the protocol have more requests.
        static const auto kRequests = [] {
            struct ext_idle_notifier_v1_interface requests {};
            requests.get_idle_notification = [](wl_client* from, wl_resource* notifier,
                                                std::uint32_t made, std::uint32_t timeout,
                                                wl_resource* /*seat*/) {
                ask(from, notifier, ext_idle_notification_v1_interface, made, timeout);
            };
            return requests;
        }();
        offer(client, ext_idle_notifier_v1_interface, version, id, &kRequests, data);
    }
    static void bindKde(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
        static const struct org_kde_kwin_idle_interface kRequests {
            .get_idle_timeout = [](wl_client* from, wl_resource* notifier, std::uint32_t made,
                                   wl_resource* /*seat*/, std::uint32_t timeout) {
                ask(from, notifier, org_kde_kwin_idle_timeout_interface, made, timeout);
            }
        };
        offer(client, org_kde_kwin_idle_interface, version, id, &kRequests, data);
    }
    static void offer(wl_client* client, const wl_interface& interface, std::uint32_t version,
                      std::uint32_t id, const void* requests, void* data) {
        wl_resource_set_implementation(
            wl_resource_create(client, &interface, static_cast<int>(version), id), requests, data,
            nullptr);
    }
    static void ask(wl_client* client, wl_resource* notifier, const wl_interface& interface,
                    std::uint32_t id, std::uint32_t timeout) {
        EXPECT_EQ(timeout, 5000U);
        static_cast<FakeIdleCompositor*>(wl_resource_get_user_data(notifier))->notification_ =
            wl_resource_create(client, &interface, 1, id);
    }

    const Kind kind_;
    wl_resource* notification_ = nullptr;
};

class TheIdleTime : public testing::Test {
protected:
    std::optional<milliseconds> ask() { return ask(time); }
    std::optional<milliseconds> ask(SessionIdleTime& asked) {
        std::optional<std::optional<milliseconds>> answered;
        asked.ask([&](auto idle) { answered = idle; });
        EXPECT_TRUE(runUntil(queue, [&] { return answered.has_value(); }));
        return answered.value_or(std::nullopt);
    }
    std::unique_ptr<FakeIdleMonitor> mutter() {
        return std::make_unique<FakeIdleMonitor>(
            queue, "org.gnome.Mutter.IdleMonitor", "/org/gnome/Mutter/IdleMonitor/Core",
            "org.gnome.Mutter.IdleMonitor", "GetIdletime", "t");
    }
    std::unique_ptr<FakeIdleMonitor> kde() {
        return std::make_unique<FakeIdleMonitor>(queue, "org.kde.screensaver", "/ScreenSaver",
                                                 "org.freedesktop.ScreenSaver",
                                                 "GetSessionIdleTime", "u");
    }

    EpollMainQueue queue;
    SessionIdleTime time{queue, {.type = "x11", .waylandDisplay = "", .display = ":0"}};
};

TEST_F(TheIdleTime, IsThatOfTheDesktopThatTells) {
    EXPECT_EQ(ask(), std::nullopt);
    const auto screenSaver = kde();
    screenSaver->idle = 4'000'000'000;
    EXPECT_TRUE(runUntil(queue, [&] { return ask().has_value(); }));
    EXPECT_EQ(ask(), milliseconds(4'000'000'000));
    auto monitor = mutter();
    monitor->idle = 7;
    EXPECT_TRUE(runUntil(queue, [&] { return ask() == milliseconds(7); }));
    monitor->idle.reset();
    EXPECT_EQ(ask(), milliseconds(4'000'000'000));
    screenSaver->idle.reset();
    EXPECT_EQ(ask(), std::nullopt);
}

TEST_F(TheIdleTime, IsThatOfTheCompositorThatTells) {
    using Kind = FakeIdleCompositor::Kind;
    const auto monitor = mutter();
    monitor->idle = 7;
    const TemporaryFolder folder;
    const std::string path = folder / "wayland-0";
    for (const Kind kind : {Kind::ext, Kind::kde}) {
        SessionIdleTime wayland{
            queue, {.type = "wayland", .waylandDisplay = path, .display = ":0"}, Seconds{0.01}};
        EXPECT_EQ(ask(wayland), std::nullopt) << "no compositor yet";
        for (int start = 0; start < 2; ++start) {
            FakeIdleCompositor compositor(queue, path, kind);
            EXPECT_TRUE(runUntil(queue, [&] { return compositor.isAsked(); }));
            EXPECT_EQ(ask(wayland), milliseconds(0));
            compositor.setIdle(true);
            runReady(queue);
            EXPECT_GE(ask(wayland), milliseconds(5000));
            EXPECT_LT(ask(wayland), milliseconds(15000));
            compositor.setIdle(false);
            runReady(queue);
            EXPECT_EQ(ask(wayland), milliseconds(0));
        }
        EXPECT_TRUE(runUntil(queue, [&] { return ask(wayland) == std::nullopt; })) << "a restart";
    }
    EXPECT_EQ(monitor->calls, 0);

    // Mutter tells over the bus.
    SessionIdleTime gnome{queue, {.type = "wayland", .waylandDisplay = path, .display = ":0"}};
    const FakeIdleCompositor compositor(queue, path, Kind::none);
    EXPECT_EQ(ask(gnome), std::nullopt);
    EXPECT_TRUE(runUntil(queue, [&] { return ask(gnome) == milliseconds(7); }));
    EXPECT_FALSE(compositor.hasClient());
}

TEST_F(TheIdleTime, IsAskedOnceForTheLastQuestion) {
    const auto monitor = mutter();
    EXPECT_TRUE(runUntil(queue, [&] { return ask().has_value(); }));
    int dropped = 0;
    time.ask([&](auto) { ++dropped; });
    EXPECT_EQ(ask(), milliseconds(0));
    EXPECT_EQ(dropped, 0);
}

}  // namespace
}  // namespace chimewerk
