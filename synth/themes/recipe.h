// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <span>
#include <string_view>

#include "synth/blocks/sound.h"

namespace chimewerk::themes {

/// The recipe of one sound. Its name is an event identifier, or the name of a key sound or
/// an alert.
struct Recipe {
    std::string_view name;
    synth::Sound (*make)();
};

/// The six themes: each has all events except the key press, and the three key sounds.
std::span<const Recipe> eightBit();
std::span<const Recipe> soft();
std::span<const Recipe> sciFi();
std::span<const Recipe> classic();
std::span<const Recipe> traditional();
std::span<const Recipe> piano();

/// The default key sounds: an old keyboard with buckling springs.
std::span<const Recipe> defaultKeys();

/// The alerts that are found by name.
std::span<const Recipe> alerts();

}  // namespace chimewerk::themes
