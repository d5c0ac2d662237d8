// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "monitors/brightness_monitor.h"
#include "monitors/volume_monitor.h"
#include "support/fake_sources.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

constexpr Seconds kTick{0.25};
constexpr std::optional<float> kNone;

using Readings = std::vector<std::optional<float>>;

/// The first reading is made at the start, each further one a tick later. In `fires`, each tick
/// gives '+' for up, '-' for down, '.' for nothing.
struct Case {
    const char* what;
    Readings readings;
    const char* fires;
};

template <typename Monitor, typename SetLevel>
std::string run(VirtualMainQueue& queue, Monitor& monitor, const Readings& readings,
                SetLevel setLevel) {
    char fired = '.';
    monitor.onUp = [&] { fired = '+'; };
    monitor.onDown = [&] { fired = '-'; };
    std::string all;
    setLevel(readings.front());
    monitor.start();
    for (std::size_t i = 1; i < readings.size(); ++i) {
        setLevel(readings[i]);
        queue.advance(kTick);
        all += std::exchange(fired, '.');
    }
    monitor.stop();
    monitor.onUp = nullptr;
    monitor.onDown = nullptr;
    return all;
}

class TheBrightnessMonitor : public testing::Test {
protected:
    VirtualMainQueue queue;
    FakeBrightnessSource display;
    BrightnessMonitor monitor{queue, display};
};

TEST_F(TheBrightnessMonitor, ComparesWithTheLevelOfTheLastEvent) {
    for (const Case& c : std::vector<Case>{
             {"slow changes add up", {0.50F, 0.52F, 0.54F, 0.56F, 0.575F}, ".+.+"},
             {"and down as well", {0.50F, 0.48F, 0.46F, 0.46F}, ".-."},
             {"exactly the least change is too little", {0.0F, 0.03F, 0.0F, 0.0301F}, "..+"},
             {"back and forth", {1.0F, 0.0F, 1.0F, 0.98F, 1.0F}, "-+.."},
             {"no display at the start", {kNone, kNone, 0.2F, 0.9F}, "..+"},
             {"unreadable in between", {0.2F, kNone, kNone, 0.22F, 0.5F}, "...+"},
             {"to darkness", {0.04F, 0.0F, kNone, 0.04F}, "-.+"}}) {
        EXPECT_EQ(run(queue, monitor, c.readings, [this](auto level) { display.level = level; }),
                  c.fires)
            << c.what;
    }
}

TEST_F(TheBrightnessMonitor, TakesTheLevelAtEachStartAsReferenceAndPollsOnlyWhileStarted) {
    display.level = 0.9F;
    monitor.start();
    display.level = 0.1F;
    queue.advance(kTick);  // No callback is set.
    std::string fired;
    monitor.onUp = [&] { fired += '+'; };
    monitor.stop();
    display.level = 0.9F;
    queue.advance(Seconds{60});
    monitor.start();
    queue.advance(Seconds{60});
    EXPECT_EQ(fired, "");
    display.level = 1.0F;
    queue.advance(kTick);
    EXPECT_EQ(fired, "+");
}

class TheVolumeMonitor : public testing::Test {
protected:
    VirtualMainQueue queue;
    FakeOutputVolumeSource output;
    VolumeMonitor monitor{queue, output};
};

TEST_F(TheVolumeMonitor, ComparesWithTheReadingBefore) {
    for (const Case& c :
         std::vector<Case>{{"slow changes are none", {0.50F, 0.52F, 0.54F, 0.56F}, "..."},
                           {"up and down", {0.50F, 0.60F, 0.40F}, "+-"},
                           {"exactly the least change is enough", {0.0F, 0.03F, 0.0F}, "+-"},
                           {"to silence and back", {0.5F, 0.0F, 0.5F}, "-+"},
                           {"no device at the start", {kNone, kNone, 0.5F, 0.6F}, "..+"},
                           {"no device in between", {0.5F, kNone, 0.5F, kNone, 0.6F}, "...+"}}) {
        output = {};
        EXPECT_EQ(run(queue, monitor, c.readings, [this](auto level) { output.main = level; }),
                  c.fires)
            << c.what;
    }
}

TEST_F(TheVolumeMonitor, UsesTheFirstChannelOfADeviceWithoutAMainVolume) {
    EXPECT_EQ(run(queue, monitor, {0.5F, 0.6F, 0.2F},
                  [this](auto level) { output.firstChannel = level; }),
              "+-");
    output.firstChannel = 0.9F;
    EXPECT_EQ(run(queue, monitor, {0.5F, 0.5F, kNone}, [this](auto level) { output.main = level; }),
              ".+");
}

}  // namespace
}  // namespace chimewerk
