// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// Returns any bytes as valid UTF-8, for formats that hold only text: a file path may be any bytes.
/// Bytes that are valid UTF-8 stay as they are. Others become a NUL character, which no path holds,
/// followed by each byte as the character of that number, so that Latin-1 names stay legible.
std::string textFromBytes(std::string bytes);

/// The inverse of `textFromBytes`. Text that it never makes stays as it is.
std::string bytesFromText(std::string text);

}  // namespace chimewerk
