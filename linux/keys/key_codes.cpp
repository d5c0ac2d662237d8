// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/key_codes.h"

#include <linux/input-event-codes.h>

#include <array>

namespace chimewerk {

namespace {

struct Key {
    std::uint8_t evdevCode;
    std::uint8_t virtualCode;
};

constexpr std::uint8_t kOther = kOtherKey;

// In rows, as on a keyboard.
// clang-format off
constexpr Key kKeys[] = {
    // Letters.
    {KEY_A, 0}, {KEY_S, 1}, {KEY_D, 2}, {KEY_F, 3}, {KEY_H, 4}, {KEY_G, 5}, {KEY_Z, 6}, {KEY_X, 7}, {KEY_C, 8},
    {KEY_V, 9}, {KEY_B, 11}, {KEY_Q, 12}, {KEY_W, 13}, {KEY_E, 14}, {KEY_R, 15}, {KEY_Y, 16}, {KEY_T, 17},
    {KEY_O, 31}, {KEY_U, 32}, {KEY_I, 34}, {KEY_P, 35}, {KEY_L, 37}, {KEY_J, 38}, {KEY_K, 40}, {KEY_N, 45},
    {KEY_M, 46},
    // Digits and punctuation.
    {KEY_1, 18}, {KEY_2, 19}, {KEY_3, 20}, {KEY_4, 21}, {KEY_6, 22}, {KEY_5, 23}, {KEY_EQUAL, 24}, {KEY_9, 25},
    {KEY_7, 26}, {KEY_MINUS, 27}, {KEY_8, 28}, {KEY_0, 29}, {KEY_RIGHTBRACE, 30}, {KEY_LEFTBRACE, 33},
    {KEY_APOSTROPHE, 39}, {KEY_SEMICOLON, 41}, {KEY_BACKSLASH, 42}, {KEY_COMMA, 43}, {KEY_SLASH, 44},
    {KEY_DOT, 47}, {KEY_GRAVE, 50}, {KEY_102ND, 10}, {KEY_YEN, 93}, {KEY_RO, 94},
    // Editing and movement.
    {KEY_ENTER, 36}, {KEY_TAB, 48}, {KEY_SPACE, 49}, {KEY_BACKSPACE, 51}, {KEY_ESC, 53}, {KEY_COMPOSE, 110},
    {KEY_INSERT, 114}, {KEY_HELP, 114}, {KEY_HOME, 115}, {KEY_PAGEUP, 116}, {KEY_DELETE, 117}, {KEY_END, 119},
    {KEY_PAGEDOWN, 121}, {KEY_LEFT, 123}, {KEY_RIGHT, 124}, {KEY_DOWN, 125}, {KEY_UP, 126},
    // The keypad.
    {KEY_KPDOT, 65}, {KEY_KPASTERISK, 67}, {KEY_KPPLUS, 69}, {KEY_NUMLOCK, 71}, {KEY_KPSLASH, 75},
    {KEY_KPENTER, 76}, {KEY_KPMINUS, 78}, {KEY_KPEQUAL, 81}, {KEY_KP0, 82}, {KEY_KP1, 83}, {KEY_KP2, 84},
    {KEY_KP3, 85}, {KEY_KP4, 86}, {KEY_KP5, 87}, {KEY_KP6, 88}, {KEY_KP7, 89}, {KEY_KP8, 91}, {KEY_KP9, 92},
    {KEY_KPCOMMA, 95}, {KEY_KPJPCOMMA, 95}, {KEY_KPPLUSMINUS, kOther}, {KEY_KPLEFTPAREN, kOther},
    {KEY_KPRIGHTPAREN, kOther},
    // Function keys; Print Screen, Scroll Lock and Pause sit where F13 to F15 do.
    {KEY_F1, 122}, {KEY_F2, 120}, {KEY_F3, 99}, {KEY_F4, 118}, {KEY_F5, 96}, {KEY_F6, 97}, {KEY_F7, 98},
    {KEY_F8, 100}, {KEY_F9, 101}, {KEY_F10, 109}, {KEY_F11, 103}, {KEY_F12, 111}, {KEY_F13, 105}, {KEY_F14, 107},
    {KEY_F15, 113}, {KEY_F16, 106}, {KEY_F17, 64}, {KEY_F18, 79}, {KEY_F19, 80},
    {KEY_SYSRQ, 105}, {KEY_SCROLLLOCK, 107},
    {KEY_PAUSE, 113},
    // Keys of Japanese and Korean keyboards.
    {KEY_MUHENKAN, 102}, {KEY_HENKAN, 104}, {KEY_KATAKANAHIRAGANA, 104}, {KEY_ZENKAKUHANKAKU, kOther},
    {KEY_KATAKANA, kOther}, {KEY_HIRAGANA, kOther}, {KEY_HANGEUL, 104}, {KEY_HANJA, 102},
    // The left block of workstation keyboards.
    {KEY_STOP, kOther}, {KEY_AGAIN, kOther}, {KEY_PROPS, kOther}, {KEY_UNDO, kOther}, {KEY_FRONT, kOther},
    {KEY_COPY, kOther}, {KEY_OPEN, kOther}, {KEY_PASTE, kOther}, {KEY_FIND, kOther}, {KEY_CUT, kOther},
    {KEY_LINEFEED, kOther},
};
// clang-format on

constexpr std::int16_t kSilent = -1;

constexpr auto kByEvdevCode = [] {
    std::array<std::int16_t, 256> table{};
    table.fill(kSilent);
    for (const Key& key : kKeys) {
        table[key.evdevCode] = key.virtualCode;
    }
    return table;
}();

}  // namespace

std::optional<std::int64_t> virtualKeyCode(unsigned evdevCode) {
    if (evdevCode >= kByEvdevCode.size() || kByEvdevCode[evdevCode] == kSilent) {
        return std::nullopt;
    }
    return kByEvdevCode[evdevCode];
}

}  // namespace chimewerk
