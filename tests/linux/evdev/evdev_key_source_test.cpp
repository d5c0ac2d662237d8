// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/evdev/evdev_key_source.h"

#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/fake_compositor.h"
#include "support/fake_keyboards.h"
#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "support/unprivileged.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<unsigned> kKeyboard{KEY_A,         KEY_B,        KEY_SPACE,   KEY_ENTER,
                                      KEY_LEFTSHIFT, KEY_CAPSLOCK, KEY_VOLUMEUP};

class TheEventDevices : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(umockdev_in_mock_environment()) << "not run in umockdev-wrapper";
    }

    bool listen() {
        tap = source.createTap(
            {.onKeyDown = [this](std::int64_t keyCode) { received.push_back(keyCode); },
             .onDisabled =
                 [this] {
                     ++disablings;
                     tap->setEnabled(true);
                 }});
        if (tap) {
            tap->setEnabled(true);
        }
        return tap != nullptr;
    }
    /// Presses and releases these keys on a device and returns the key codes reported.
    std::vector<std::int64_t> pressEach(const std::string& device,
                                        const std::vector<unsigned>& keys) {
        received.clear();
        for (const unsigned key : keys) {
            devices.send(device, key, 1);
            devices.send(device, key, 0);
        }
        runReady(queue);
        return received;
    }

    void switchUser(bool toUs) {
        isOurs = toUs;
        std::ofstream(seats / ".seat0-new") << "ACTIVE=c2\n";
        std::filesystem::rename(seats / ".seat0-new", seats / "seat0");
        runReady(queue);
    }

    /// Returns the number of open descriptors on devices (the devices' end included) and for
    /// watching them.
    static std::size_t held() {
        return openDescriptors("/dev/input/") + openDescriptors("inotify");
    }

    FakeKeyboards devices;
    EpollMainQueue queue;
    // The folder above is watched, too, and must be as still.
    const TemporaryFolder run;
    const TemporaryFolder seats{run.path()};
    bool isOurs = true;
    EvdevKeySource source{queue,
                          run / "wayland-0",
                          "/dev/input",
                          {.folder = seats.path(), .isOurs = [this] { return isOurs; }}};
    std::vector<std::int64_t> received;
    int disablings = 0;
    std::unique_ptr<KeyTap> tap;
};

TEST_F(TheEventDevices, AreTrustedIfOneOfThemHasTypingKeys) {
    EXPECT_FALSE(source.trusted());
    devices.plug("event0", {KEY_POWER, KEY_SLEEP});
    devices.plug("event1", {BTN_LEFT, BTN_RIGHT, BTN_MIDDLE});
    devices.plug("event2", {KEY_VOLUMEUP, KEY_PLAYPAUSE, KEY_MUTE});
    devices.plug("event3", kKeyboard);
    devices.makeAccessible();
    const Unprivileged self;
    for (const char* const device : {"event0", "event1", "event2", "event3"}) {
        self.permit(devices.file(device), 0);
    }
    EXPECT_EQ(source.report().mechanism, "evdev, not permitted");
    EXPECT_FALSE(source.trusted());
    EXPECT_FALSE(listen());
    self.permit(devices.file("event3"), 0666);
    EXPECT_TRUE(source.trusted());
    EXPECT_TRUE(listen());
}

TEST_F(TheEventDevices, WaitForAKeyboardThatIsNotThereAfterAWake) {
    devices.plug("event0", {KEY_POWER});
    devices.makeAccessible();
    {
        const Unprivileged self;
        self.permit(devices.file("event0"), 0);
        EXPECT_TRUE(source.trusted()) << "there is no keyboard that may not be read";
        EXPECT_EQ(source.report().mechanism, "evdev, no keyboard");
        ASSERT_TRUE(listen());
    }
    devices.plug("event9", kKeyboard);
    runReady(queue);
    EXPECT_THAT(pressEach("event9", {KEY_A}), ElementsAre(0));
}

TEST_F(TheEventDevices, AreSilentWhileAnotherUserIsInTheForeground) {
    devices.plug("event0", kKeyboard);
    ASSERT_TRUE(listen());
    switchUser(false);
    EXPECT_THAT(pressEach("event0", {KEY_A}), IsEmpty());
    switchUser(true);
    EXPECT_THAT(pressEach("event0", {KEY_B}), ElementsAre(11));
    EXPECT_EQ(disablings, 0);
}

TEST_F(TheEventDevices, ReportPressesAndRepeatsButNoReleasesModifiersOrMediaKeys) {
    devices.plug("event0", kKeyboard);
    ASSERT_TRUE(listen());
    EXPECT_THAT(pressEach("event0", {KEY_A, KEY_LEFTSHIFT, KEY_CAPSLOCK, KEY_VOLUMEUP, KEY_ENTER}),
                ElementsAre(0, 36));
    received.clear();
    devices.send("event0", KEY_A, 1);
    devices.send("event0", KEY_A, 2);
    devices.send("event0", KEY_A, 2);
    devices.send("event0", KEY_A, 0);
    runReady(queue);
    EXPECT_THAT(received, ElementsAre(0, 0, 0));
}

TEST_F(TheEventDevices, RepeatAsTheCompositorTells) {
    FakeSeatCompositor compositor(queue, run / "wayland-0");
    devices.plug("event0", kKeyboard);
    devices.plug("event1", kKeyboard);
    ASSERT_TRUE(listen());
    ASSERT_TRUE(runUntil(queue, [&] { return compositor.hasSeat(); }));
    const auto hold = [this](unsigned key) {
        received.clear();
        devices.send("event0", key, 1);
        devices.send("event0", key, 2);
        runReady(queue);
    };
    const auto isReceived = [this](std::size_t times) {
        return runUntil(queue, [&] { return received.size() >= times; });
    };
    hold(KEY_A);
    EXPECT_THAT(received, ElementsAre(0, 0)) << "no keyboard in the compositor yet";
    devices.send("event0", KEY_A, 0);

    compositor.setRepeats(100, 200);
    runReady(queue);
    const auto pressed = std::chrono::steady_clock::now();
    hold(KEY_A);
    EXPECT_THAT(received, ElementsAre(0));
    ASSERT_TRUE(isReceived(2));
    EXPECT_GE(std::chrono::steady_clock::now() - pressed, std::chrono::milliseconds(200));
    compositor.setRepeats(100, 200);
    EXPECT_TRUE(isReceived(4)) << "settings that have not changed";
    devices.send("event0", KEY_LEFTSHIFT, 1);
    devices.send("event1", KEY_B, 1);
    devices.send("event1", KEY_B, 0);
    runReady(queue);
    EXPECT_EQ(received.back(), 11) << "a shift key does not end repeats, another key does";
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.3}), 0);

    const std::pair<const char*, std::function<void()>> ends[] = {
        {"a release", [&] { devices.send("event0", KEY_A, 0); }},
        {"another user's session", [&] { switchUser(false); }},
        {"other settings", [&] { compositor.setRepeats(50, 100); }},
        {"no keyboard", [&] { devices.unplug("event0"); }}};
    for (const auto& [what, end] : ends) {
        hold(KEY_A);
        EXPECT_TRUE(isReceived(3)) << what;
        end();
        wakeUpsWithin(queue, Seconds{0.05});
        received.clear();
        EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0) << what;
        EXPECT_THAT(received, IsEmpty()) << what;
        switchUser(true);
    }
    devices.plug("event0", kKeyboard);
    compositor.unplug();
    runReady(queue);
    compositor.setRepeats(0, 0);
    runReady(queue);
    hold(KEY_A);
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0) << "no repeats at all";
    EXPECT_THAT(received, ElementsAre(0));
}

TEST_F(TheEventDevices, GoOnWithoutAnUnpluggedKeyboardAndReportItsKeysAgainLater) {
    devices.plug("event0", kKeyboard);
    devices.plug("event1", kKeyboard);
    ASSERT_TRUE(listen());
    EXPECT_EQ(source.report(), SourceReport{.mechanism = "evdev, 2 keyboards"});
    EXPECT_THAT(pressEach("event0", {KEY_A}), ElementsAre(0));
    EXPECT_THAT(pressEach("event1", {KEY_A}), ElementsAre(0));
    const std::size_t before = held();
    for (int i = 1; i <= 3; ++i) {
        devices.unplug("event1");
        runReady(queue);
        EXPECT_EQ(disablings, i);
        EXPECT_THAT(pressEach("event0", {KEY_A}), ElementsAre(0));
        // The folder may report the removal late; a watch that spins wakes it hundreds of times.
        EXPECT_LT(wakeUpsWithin(queue, Seconds{0.05}), 10);
        devices.plug("event1", kKeyboard);
        runReady(queue);
        EXPECT_THAT(pressEach("event1", {KEY_A}), ElementsAre(0));
    }
    EXPECT_EQ(held(), before);
    devices.unplug("event0");
    devices.unplug("event1");
    runReady(queue);
    EXPECT_FALSE(source.trusted());
    devices.plug("event5", kKeyboard);
    runReady(queue);
    EXPECT_THAT(pressEach("event5", {KEY_A}), ElementsAre(0));
}

TEST_F(TheEventDevices, ReportOnlyWhileTheyAreReadable) {
    devices.plug("event0", kKeyboard);
    devices.plug("event1", kKeyboard);
    devices.makeAccessible();
    const Unprivileged self;
    self.permit(devices.file("event0"), 0);
    self.permit(devices.file("event1"), 0666);
    ASSERT_TRUE(listen());
    EXPECT_THAT(pressEach("event1", {KEY_A}), ElementsAre(0));
    EXPECT_THAT(pressEach("event0", {KEY_A}), IsEmpty());
    self.permit(devices.file("event0"), 0666);
    runReady(queue);
    EXPECT_THAT(pressEach("event0", {KEY_A}), ElementsAre(0));
    self.permit(devices.file("event0"), 0);
    self.permit(devices.file("event1"), 0);
    EXPECT_FALSE(source.trusted());
    runReady(queue);
    EXPECT_THAT(pressEach("event0", {KEY_A}), IsEmpty());
    EXPECT_EQ(disablings, 0);
    self.permit(devices.file("event0"), 0666);
    runReady(queue);
    EXPECT_THAT(pressEach("event0", {KEY_B}), ElementsAre(11));
}

TEST_F(TheEventDevices, AreSilentWhileTheTapIsDisabled) {
    devices.plug("event0", kKeyboard);
    ASSERT_TRUE(listen());
    EXPECT_THAT(pressEach("event0", {KEY_A}), ElementsAre(0));
    const std::size_t before = held();
    tap->setEnabled(false);
    EXPECT_EQ(held(), before - 2);
    EXPECT_THAT(pressEach("event0", {KEY_A}), IsEmpty());
    tap->setEnabled(true);
    tap->setEnabled(true);
    EXPECT_EQ(held(), before);
    EXPECT_THAT(pressEach("event0", {KEY_A}), ElementsAre(0));
}

}  // namespace
}  // namespace chimewerk
