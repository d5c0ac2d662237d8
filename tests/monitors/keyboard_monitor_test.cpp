// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/keyboard_monitor.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/fake_key_source.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;

/// A monitor with three key sounds in the resource folder.
class TheKeyboardMonitor : public testing::Test {
protected:
    TheKeyboardMonitor() {
        for (const char* const name : {"click", "space", "return"}) {
            sounds.addFile(std::string("/res/key_") + name + ".wav");
        }
        library.event("key_press").isEnabled = true;
    }
    std::vector<std::string> played() const {
        std::vector<std::string> sources;
        for (const auto& play : sounds.plays()) {
            sources.push_back(play.source);
        }
        return sources;
    }
    bool isListening() {
        const std::size_t before = sounds.plays().size();
        keys.press(0);
        return sounds.plays().size() == before + 1;
    }
    void pollPermission(int times = 1) { queue.advance(Seconds{1.5} * times); }

    SoundLibrary library;
    VirtualMainQueue& queue = library.queue;
    FakeSoundService& sounds = library.sounds;
    FakeKeySource keys;
    KeyboardMonitor monitor{queue, keys, keys, *library};
};

TEST_F(TheKeyboardMonitor, PlaysTheSoundOfTheKeyBeforeThePressReturns) {
    monitor.start();
    EXPECT_TRUE(monitor.active);
    for (const int keyCode : {49, 36, 76, 0, 49}) {
        keys.press(keyCode);
    }
    EXPECT_THAT(played(),
                ElementsAre("/res/key_space.wav", "/res/key_return.wav", "/res/key_return.wav",
                            "/res/key_click.wav", "/res/key_space.wav"));
    EXPECT_EQ(keys.pagesShown, 0);
}

TEST_F(TheKeyboardMonitor, StartsOnlyOnce) {
    monitor.start();
    monitor.start();
    EXPECT_EQ(keys.tapsMade, 1);
    EXPECT_TRUE(isListening());
}

TEST_F(TheKeyboardMonitor, ShowsThePageAndListensAtTheFirstPollWithPermission) {
    keys.mayListen = false;
    monitor.start();
    EXPECT_EQ(keys.pagesShown, 1);
    pollPermission(1000);
    EXPECT_FALSE(monitor.active);
    EXPECT_EQ(keys.pagesShown, 1);
    keys.mayListen = true;
    pollPermission();
    EXPECT_TRUE(monitor.active);
    EXPECT_TRUE(isListening());
    queue.advance(Seconds{10});
    EXPECT_EQ(keys.tapsMade, 1);
    EXPECT_EQ(queue.queued(), 0U);  // The polling has stopped.
}

TEST_F(TheKeyboardMonitor, ShowsThePageAgainAndReplacesThePollWhenStartedWhileWaiting) {
    keys.mayListen = false;
    monitor.start();
    monitor.start();
    EXPECT_EQ(keys.pagesShown, 2);
    pollPermission();
    EXPECT_EQ(queue.queued(), 1U);
    keys.mayListen = true;
    pollPermission(3);
    EXPECT_EQ(keys.tapsMade, 1);
}

TEST_F(TheKeyboardMonitor, StaysStoppedWhenPermissionComesAfterAStop) {
    keys.mayListen = false;
    monitor.start();
    monitor.stop();
    keys.mayListen = true;
    pollPermission(3);
    EXPECT_FALSE(monitor.active);
    EXPECT_EQ(keys.tapsMade, 0);
    EXPECT_EQ(queue.queued(), 0U);
}

TEST_F(TheKeyboardMonitor, IsSilentAfterAStopUntilTheNextStart) {
    monitor.stop();  // Before any start.
    monitor.start();
    monitor.stop();
    EXPECT_FALSE(monitor.active);
    EXPECT_EQ(monitor.tap, nullptr);
    EXPECT_FALSE(isListening());
    monitor.start();
    EXPECT_TRUE(isListening());
}

TEST_F(TheKeyboardMonitor, ReenablesATapThatTheSystemDisabled) {
    monitor.start();
    for (int i = 0; i < 3; ++i) {
        keys.disableTap();
        EXPECT_TRUE(monitor.active);
        EXPECT_TRUE(isListening());
    }
    EXPECT_EQ(keys.enablings, 4);
}

TEST_F(TheKeyboardMonitor, RestartsWithANewTapOrEndsStoppedWithoutAPage) {
    monitor.start();
    monitor.restart();
    EXPECT_EQ(keys.tapsMade, 2);
    EXPECT_TRUE(isListening());

    keys.mayListen = false;
    monitor.restart();
    EXPECT_FALSE(monitor.active);
    EXPECT_FALSE(keys.tapExists());
    EXPECT_EQ(keys.pagesShown, 0);
    keys.mayListen = true;
    pollPermission(3);
    EXPECT_FALSE(monitor.active);

    keys.mayListen = false;
    monitor.start();
    monitor.restart();  // Ends the waiting as well.
    keys.mayListen = true;
    pollPermission(3);
    EXPECT_FALSE(monitor.active);
}

TEST_F(TheKeyboardMonitor, StaysInactiveIfNoTapCanBeMadeUntilItIsStartedAgain) {
    keys.tapsCanBeMade = false;
    monitor.start();
    EXPECT_FALSE(monitor.active);
    EXPECT_EQ(keys.pagesShown, 0);
    keys.tapsCanBeMade = true;
    pollPermission(3);
    EXPECT_FALSE(monitor.active);
    monitor.start();
    EXPECT_TRUE(isListening());
}

}  // namespace
}  // namespace chimewerk
