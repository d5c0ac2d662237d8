// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/user_brightness_source.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

class Display final : public BrightnessSource {
public:
    std::optional<float> brightness() override { return level; }
    bool announcesChanges() const override { return true; }
    void set(std::optional<float> to) {
        level = to;
        announce();
    }

    std::optional<float> level = 0.8F;
};

/// With the real rule behind it.
class TheUsersBrightness : public testing::Test {
protected:
    TheUsersBrightness() {
        monitor.onUp = [this] { heard.emplace_back("up"); };
        monitor.onDown = [this] { heard.emplace_back("down"); };
        monitor.start();
    }
    /// The display changes while nobody has touched anything for so long.
    std::vector<std::string> change(std::optional<float> to, UserBrightnessSource::IdleTime idle) {
        display.set(to);
        queue.advance(Seconds{1});
        if (asked) {
            std::exchange(asked, nullptr)(idle);
        }
        queue.advance(Seconds{1});
        return std::exchange(heard, {});
    }

    using Heard = std::vector<std::string>;
    VirtualMainQueue queue;
    Display display;
    std::function<void(UserBrightnessSource::IdleTime)> asked;
    UserBrightnessSource source{display, [this](auto answer) { asked = std::move(answer); }};
    Heard heard;
    BrightnessMonitor monitor{queue, source};
};

TEST_F(TheUsersBrightness, ChangesByKeysAndNotByWhatTheDesktopDoesMeanwhile) {
    EXPECT_TRUE(asked) << "a desktop may count only from the first question";
    EXPECT_EQ(change(0.9F, seconds(0)), Heard{"up"});
    EXPECT_EQ(change(0.3F, minutes(4)), Heard()) << "dimmed";
    EXPECT_EQ(change(0.2F, minutes(5)), Heard()) << "dimmed further";
    EXPECT_EQ(change(0.9F, seconds(0)), Heard()) << "somebody has come back";
    EXPECT_EQ(change(0.8F, seconds(1)), Heard{"down"});
    EXPECT_EQ(change(0.3F, minutes(4)), Heard());
    EXPECT_EQ(change(0.7F, seconds(0)), Heard{"down"}) << "back, and a key";
}

TEST_F(TheUsersBrightness, IsThatOfTheDisplayWhereNoDesktopTells) {
    EXPECT_EQ(change(0.3F, std::nullopt), Heard{"down"});
    EXPECT_EQ(change(std::nullopt, std::nullopt), Heard()) << "unplugged";
    EXPECT_EQ(change(0.8F, std::nullopt), Heard{"up"});
}

}  // namespace
}  // namespace chimewerk
