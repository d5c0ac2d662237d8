// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/lid_angle_monitor.h"

#include <gtest/gtest.h>

#include <any>
#include <optional>
#include <vector>

#include "sound/notifications.h"
#include "support/fake_lid_sensor_source.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

class TheLidAngleMonitor : public testing::Test {
protected:
    TheLidAngleMonitor() { library.event("lid_angle").isEnabled = true; }

    /// Moves the lid, a second later by default. Returns whether that played the event.
    bool moves(float degrees, Seconds after = Seconds{1}) {
        const std::int64_t before = plays();
        queue.advance(after);
        sensor.moveTo(degrees);
        queue.runPosted();
        return plays() > before;
    }
    std::int64_t plays() { return library.event("lid_angle").triggerCount; }

    SoundLibrary library;
    VirtualMainQueue& queue = library.queue;
    FakeLidSensorSource sensor;
    LidAngleMonitor monitor{{queue, queue, library.notifications, *library, sensor}};
    std::vector<float> announced;
    NotificationCenter::Subscription angles =
        library.notifications.observe(lidAngleDidChange, [this](const Notification& n) {
            EXPECT_FALSE(n.object.has_value());
            EXPECT_EQ(n.userInfo.size(), 1U);
            announced.push_back(std::any_cast<float>(n.userInfo.at("angle")));
        });
};

TEST_F(TheLidAngleMonitor, PlaysWhenTheLidReachesTheThresholdFromEitherSide) {
    monitor.start(90.0F);
    EXPECT_FALSE(moves(80)) << "the first sample";
    EXPECT_TRUE(moves(95));
    EXPECT_TRUE(moves(85));
    EXPECT_TRUE(moves(90)) << "exactly on it, from below";
    EXPECT_FALSE(moves(92)) << "the sample before was not below";
    EXPECT_TRUE(moves(90)) << "exactly on it, from above";
    EXPECT_FALSE(moves(90));
    EXPECT_FALSE(moves(10)) << "the sample before was not above";
    EXPECT_TRUE(moves(359));
    EXPECT_EQ(announced, (std::vector<float>{80, 95, 85, 90, 92, 90, 90, 10, 359}));
}

TEST_F(TheLidAngleMonitor, IgnoresACrossingWithin800MillisecondsOfTheLastPlay) {
    monitor.start(90.0F);
    moves(80);
    EXPECT_TRUE(moves(100));
    EXPECT_FALSE(moves(80, Seconds{0.3}));
    EXPECT_FALSE(moves(80, Seconds{2.0})) << "the lid rests: the crossing is not made up for";
    EXPECT_TRUE(moves(100));
    EXPECT_FALSE(moves(80, Seconds{0.8 - 1e-6}));
    EXPECT_TRUE(moves(100, Seconds{2e-6})) << "counted from the play, not from the lost crossing";
}

TEST_F(TheLidAngleMonitor, IsNotSilencedByAClockThatIsSetBack) {
    monitor.start(90.0F);
    moves(80);
    EXPECT_TRUE(moves(100));
    queue.setClockBack(Seconds{3600});
    EXPECT_TRUE(moves(80));
}

TEST_F(TheLidAngleMonitor, ComparesTheNextSampleWithANewThreshold) {
    monitor.start(90.0F);
    moves(80);
    monitor.updateThreshold(70.0F);
    EXPECT_FALSE(moves(80)) << "the threshold moved, the lid rests";
    monitor.updateThreshold(75.5F);
    EXPECT_TRUE(moves(75));
}

TEST_F(TheLidAngleMonitor, ActsAfterTheSourceHasReturned) {
    monitor.start(90.0F);
    moves(80);
    queue.advance(Seconds{1});
    sensor.moveTo(95);
    EXPECT_EQ(announced, std::vector<float>{80});
    EXPECT_EQ(plays(), 0);
    queue.runPosted();
    EXPECT_EQ(announced, (std::vector<float>{80, 95}));
    EXPECT_EQ(plays(), 1);
}

TEST_F(TheLidAngleMonitor, TracksWhetherASensorIsPresent) {
    EXPECT_FALSE(monitor.sensorFound);
    sensor.present = false;
    monitor.start(90.0F);
    EXPECT_FALSE(monitor.sensorFound);
    sensor.setPresent(true);
    EXPECT_TRUE(monitor.sensorFound);
    sensor.setPresent(false);
    EXPECT_FALSE(monitor.sensorFound);
    monitor.stop();
    sensor.present = true;
    monitor.start(90.0F);
    EXPECT_TRUE(monitor.sensorFound);
    monitor.stop();
    EXPECT_TRUE(monitor.sensorFound);
}

TEST_F(TheLidAngleMonitor, ContinuesFromTheLastSampleAfterAStop) {
    monitor.stop();
    monitor.start(90.0F);
    moves(80);
    monitor.stop();
    EXPECT_FALSE(sensor.isOpen());
    EXPECT_FALSE(moves(120));
    monitor.start(90.0F);
    EXPECT_TRUE(moves(120)) << "the sample before the stop was below";
}

}  // namespace
}  // namespace chimewerk
