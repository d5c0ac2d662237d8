// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// Returns any bytes as valid UTF-8, for formats that hold only text; a file path may be any bytes.
/// Valid UTF-8 is returned unchanged. Other bytes become a NUL character, which no path holds,
/// followed by one character per byte, as in Latin-1, so that Latin-1 names stay legible.
std::string textFromBytes(std::string bytes);

/// The inverse of `textFromBytes`. Text that `textFromBytes` never returns is returned unchanged.
std::string bytesFromText(std::string text);

}  // namespace chimewerk
