#pragma once

#include <cstdint>
#include <optional>

namespace chimewerk {

/// The virtual key code of a key that types but has none of its own.
inline constexpr std::int64_t kOtherKey = 255;

/// An X11 server numbers its keys this much higher than the kernel.
inline constexpr unsigned kX11KeycodeOffset = 8;

/// The program's virtual key code of the key that the kernel calls `evdevCode` (KEY_A and so on), whatever
/// the layout makes of it. None for what is no key press to the user: modifiers, media and power keys,
/// buttons, unknown codes.
std::optional<std::int64_t> virtualKeyCode(unsigned evdevCode);

}  // namespace chimewerk
