// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <span>
#include <string_view>

#include "synth/blocks/sound.h"

namespace chimewerk::themes {

/// How one sound is made. Its name is an event identifier, a key sound's name or an alert's name.
struct Recipe {
    std::string_view name;
    synth::Sound (*make)();
};

/// The six themes: each has all events but the key press, and the three key sounds.
std::span<const Recipe> eightBit();
std::span<const Recipe> soft();
std::span<const Recipe> sciFi();
std::span<const Recipe> classic();
std::span<const Recipe> traditional();
std::span<const Recipe> piano();

/// The key sounds of no theme: an old keyboard with buckling springs.
std::span<const Recipe> defaultKeys();

/// The alerts that are found by name.
std::span<const Recipe> alerts();

}  // namespace chimewerk::themes
