// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/x11_key_source.h"

#include <gmock/gmock.h>
#include <linux/input-event-codes.h>
#include <xcb/xproto.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "linux/evdev/evdev_key_source.h"
#include "linux/keys/desktop_key_source.h"
#include "support/fake_x_input.h"
#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/child_process.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Uses the X server of the private session.
class TheX11Keys : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(std::getenv("DISPLAY"), nullptr);
        ASSERT_TRUE(x.works());
    }

    void listen(KeySource& from) {
        tap = from.createTap(
            {.onKeyDown = [this](std::int64_t keyCode) { received.push_back(keyCode); },
             .onDisabled = [] {}});
        ASSERT_NE(tap, nullptr);
        tap->setEnabled(true);
        runReady(queue);
    }
    /// Presses and releases these keys, then space, and returns the key codes reported. The space
    /// ends the list, so that silence needs no waiting.
    std::vector<std::int64_t> pressEach(const std::vector<unsigned>& keys) {
        received.clear();
        for (const unsigned key : keys) {
            x.tap(key);
        }
        x.tap(KEY_SPACE);
        runUntil(
            queue, [&] { return !received.empty() && received.back() == 49; }, Seconds{2});
        return received;
    }

    FakeXInput x;
    EpollMainQueue queue;
    X11KeySource source{queue, std::getenv("DISPLAY")};
    std::vector<std::int64_t> received;
    std::unique_ptr<KeyTap> tap;
};

TEST_F(TheX11Keys, AreReportedWhateverWindowHasTheFocus) {
    EXPECT_TRUE(source.trusted());
    listen(source);
    EXPECT_THAT(pressEach({KEY_A, KEY_ENTER, KEY_KPENTER, KEY_LEFTSHIFT, KEY_CAPSLOCK, KEY_CAPSLOCK,
                           KEY_VOLUMEUP, KEY_S}),
                ElementsAre(0, 36, 76, 1, 49));
}

TEST_F(TheX11Keys, AreReportedDespiteAGrab) {
    listen(source);
    std::free(xcb_grab_keyboard_reply(
        x.server(),
        xcb_grab_keyboard(x.server(), 1,
                          xcb_setup_roots_iterator(xcb_get_setup(x.server())).data->root,
                          XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    EXPECT_THAT(pressEach({KEY_A}), ElementsAre(0, 49));
    xcb_ungrab_keyboard(x.server(), XCB_CURRENT_TIME);
    x.sync();
}

TEST_F(TheX11Keys, RepeatWhileHeldWithTheServersSettings) {
    ASSERT_EQ(std::system("xset r rate 200 50"), 0);
    listen(source);
    const auto hasReceived = [&](std::int64_t keyCode, int times) {
        return runUntil(queue, [&] { return std::ranges::count(received, keyCode) >= times; });
    };
    x.press(KEY_LEFTCTRL);  // Does not repeat, and is not reported.
    const auto pressed = std::chrono::steady_clock::now();
    x.press(KEY_A);
    EXPECT_TRUE(hasReceived(0, 2));
    EXPECT_GE(std::chrono::steady_clock::now() - pressed, std::chrono::milliseconds(200));
    EXPECT_TRUE(hasReceived(0, 5));
    x.press(KEY_B);  // Only the last key repeats.
    EXPECT_TRUE(hasReceived(11, 3));
    EXPECT_TRUE(std::ranges::is_sorted(received)) << "no A after the first B";
    x.release(KEY_A);
    EXPECT_TRUE(hasReceived(11, 5));
    x.release(KEY_B);
    x.release(KEY_LEFTCTRL);
    x.sync();
    runReady(queue);
    const std::size_t atRelease = received.size();
    EXPECT_LE(wakeUpsWithin(queue, Seconds{0.3}), 1) << "to see that the key is up";
    EXPECT_EQ(received.size(), atRelease);

    ASSERT_EQ(std::system("xset r off"), 0);  // The server announces the change to the tap.
    runReady(queue);
    received.clear();
    x.press(KEY_A);
    EXPECT_TRUE(runUntil(queue, [&] { return received.size() == 1; }));
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.4}), 0);
    x.release(KEY_A);
    ASSERT_EQ(std::system("xset r on"), 0);
}

TEST_F(TheX11Keys, AreSilentWhileTheTapIsDisabled) {
    listen(source);
    const std::size_t enabled = openDescriptors();
    tap->setEnabled(false);
    tap->setEnabled(false);
    EXPECT_EQ(openDescriptors(), enabled - 1);
    x.tap(KEY_A);
    x.sync();
    runReady(queue);
    EXPECT_THAT(received, IsEmpty());
    tap->setEnabled(true);
    runReady(queue);
    EXPECT_EQ(openDescriptors(), enabled);
    EXPECT_THAT(pressEach({KEY_A}), ElementsAre(0, 49));
}

TEST_F(TheX11Keys, AreNotTrustedWithoutAServer) {
    X11KeySource nowhere(queue, ":4711");
    EXPECT_FALSE(nowhere.trusted());
    EXPECT_EQ(nowhere.createTap({.onKeyDown = [](std::int64_t) {}, .onDisabled = [] {}}), nullptr);
    X11KeySource nonsense(queue, "no display");
    EXPECT_FALSE(nonsense.trusted());
}

/// Uses another X server, which can be killed.
TEST_F(TheX11Keys, AreReportedAgainAfterTheServerRestarts) {
    const std::vector<std::string> command{"Xvfb",       ":4712",     "-screen", "0",
                                           "640x480x24", "-nolisten", "tcp",     "-noreset"};
    constexpr Seconds kRetry{0.1};
    X11KeySource passing(queue, ":4712", kRetry);
    {
        ChildProcess server(command);
        ASSERT_TRUE(server.started());
        ASSERT_TRUE(runUntil(queue, [&] { return passing.trusted(); }));
        listen(passing);
        FakeXInput keyboard(":4712");
        keyboard.press(KEY_A);  // Held when the server dies; must not go on repeating.
        ASSERT_TRUE(runUntil(queue, [&] { return received.size() == 1; }));
        server.end(SIGKILL);
    }
    runReady(queue);
    EXPECT_LE(wakeUpsWithin(queue, 8 * kRetry), 16);  // It does not spin.
    EXPECT_EQ(received.size(), 1U);
    ChildProcess server(command);
    ASSERT_TRUE(runUntil(queue, [&] { return passing.trusted(); }));
    FakeXInput keyboard(":4712");
    received.clear();
    EXPECT_TRUE(runUntil(queue, [&] {
        keyboard.tap(KEY_A);
        return !received.empty();
    }));
}

/// Returns what makes the source of the event devices in this folder.
DesktopKeySource::MakeSource eventDevices(EpollMainQueue& queue, const std::string& folder) {
    return [&queue, folder] { return std::make_unique<EvdevKeySource>(queue, "", folder); };
}

TEST_F(TheX11Keys, AreUsedOnlyInAnX11SessionWithoutEventDevices) {
    const std::string display = std::getenv("DISPLAY");
    // As when a joystick may be read and the keyboards may not.
    const TemporaryFolder input;
    std::ofstream(input / "event0") << "";
    DesktopKeySource x11(queue, {.type = "x11", .waylandDisplay = "", .display = display},
                         eventDevices(queue, input.path()));
    EXPECT_TRUE(x11.trusted());
    listen(x11);
    EXPECT_THAT(pressEach({KEY_A}), ElementsAre(0, 49));
    DesktopKeySource wayland(queue,
                             {.type = "wayland", .waylandDisplay = "wayland-0", .display = display},
                             eventDevices(queue, input / "nothing"));
    EXPECT_FALSE(wayland.trusted());
    EXPECT_EQ(wayland.createTap({.onKeyDown = [](std::int64_t) {}, .onDisabled = [] {}}), nullptr);
}

}  // namespace
}  // namespace chimewerk
