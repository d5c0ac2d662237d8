// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/key_codes.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <map>

#include "linux/desktop/session_environment.h"

namespace chimewerk {
namespace {

TEST(TheKeyCodes, AreTheProgramsCodesForTheKernelsKeys) {
    struct Case {
        unsigned evdev;
        std::int64_t code;
    };
    for (const Case& c : {Case{KEY_SPACE, 49}, Case{KEY_ENTER, 36}, Case{KEY_KPENTER, 76},
                          Case{KEY_A, 0}, Case{KEY_F19, 80}, Case{KEY_ZENKAKUHANKAKU, kOtherKey}}) {
        EXPECT_EQ(virtualKeyCode(c.evdev), c.code) << "key " << c.evdev;
    }
}

TEST(TheKeyCodes, LeaveOutModifiersMediaKeysAndButtons) {
    for (const unsigned evdev :
         {KEY_RESERVED, KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL, KEY_RIGHTCTRL, KEY_LEFTALT,
          KEY_RIGHTALT, KEY_LEFTMETA, KEY_RIGHTMETA, KEY_CAPSLOCK, KEY_FN, KEY_MUTE, KEY_VOLUMEUP,
          KEY_VOLUMEDOWN, KEY_MICMUTE,
          // udev gives keys for the microphone and the touchpad these codes.
          KEY_F20, KEY_F21, KEY_F22, KEY_F23, KEY_F24, KEY_BRIGHTNESSUP, KEY_BRIGHTNESSDOWN,
          KEY_KBDILLUMUP, KEY_PLAYPAUSE, KEY_NEXTSONG, KEY_PREVIOUSSONG, KEY_STOPCD, KEY_EJECTCD,
          KEY_POWER, KEY_SLEEP, KEY_RFKILL, KEY_SWITCHVIDEOMODE, BTN_LEFT, BTN_SOUTH, BTN_TOUCH,
          KEY_MAX, 0x10000 + KEY_A}) {
        EXPECT_EQ(virtualKeyCode(evdev), std::nullopt) << "key " << evdev;
    }
}

/// A wrong entry in the table would most likely repeat a code.
TEST(TheKeyCodes, AreTheSameOnlyForKeysInTheSamePlace) {
    std::map<std::int64_t, int> keys;
    for (unsigned evdev = 0; evdev < KEY_CNT; ++evdev) {
        if (const auto code = virtualKeyCode(evdev)) {
            ++keys[*code];
        }
    }
    keys.erase(kOtherKey);
    for (const std::int64_t shared :
         {95, 102, 104, 105, 107, 113, 114}) {  // Keypad comma, kana, F13 to F15, help.
        EXPECT_GT(keys[shared], 1) << shared;
        keys.erase(shared);
    }
    for (const auto& [code, count] : keys) {
        EXPECT_EQ(count, 1) << code;
        EXPECT_LE(code, 126);
    }
    EXPECT_GE(keys.size(), 95U);
}

TEST(TheSession, IsX11UnlessItsServerServesAWaylandSession) {
    struct Case {
        SessionEnvironment environment;
        bool isX11;
    };
    for (const Case& c :
         {Case{{"x11", "", ":0"}, true}, Case{{"tty", "", ":0"}, true}, Case{{"", "", ":0"}, true},
          Case{{"wayland", "wayland-0", ":0"}, false}, Case{{"wayland", "", ":0"}, false},
          Case{{"", "wayland-0", ":0"}, false}, Case{{"tty", "wayland-1", ":0"}, false},
          Case{{"x11", "wayland-stale", ":0"}, true}, Case{{"x11", "", ""}, false}}) {
        EXPECT_EQ(c.environment.isX11(), c.isX11)
            << c.environment.type << ' ' << c.environment.waylandDisplay << ' '
            << c.environment.display;
    }
}

}  // namespace
}  // namespace chimewerk
