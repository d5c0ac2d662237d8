// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/session_idle_time.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

#include "support/fake_bus_service.h"
#include "support/run_queue.h"

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

class TheIdleTime : public testing::Test {
protected:
    std::optional<milliseconds> ask() {
        std::optional<std::optional<milliseconds>> answered;
        time.ask([&](auto idle) { answered = idle; });
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
    SessionIdleTime time{queue};
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
