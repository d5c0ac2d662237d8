// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>

namespace chimewerk {

/// The virtual key code of keys that type but have no code of their own.
inline constexpr std::int64_t kOtherKey = 255;

/// An X11 server's key codes are higher than the kernel's by this number.
inline constexpr unsigned kX11KeycodeOffset = 8;

/// Converts the kernel's key code (KEY_A and so on) to the program's virtual key code, whatever the
/// keyboard layout. None for modifiers, media and power keys, buttons and unknown codes, which do
/// not count as key presses.
std::optional<std::int64_t> virtualKeyCode(unsigned evdevCode);

}  // namespace chimewerk
