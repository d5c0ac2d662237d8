// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace chimewerk {

/// The width of a terminal, in columns.
inline constexpr std::size_t kTerminalWidth = 80;

/// Returns the rows as lines whose cells stand below each other, two spaces apart. The last cell of
/// a row is wrapped at spaces to fit the terminal; a longer word stands alone in its line. UTF-8;
/// one code point takes one column.
std::string textTable(const std::vector<std::vector<std::string>>& rows);

/// Returns the words in lines that fit the terminal; those after the first line begin with as many
/// spaces as `indent` says. `used` columns of the first line are taken.
std::string wrapped(std::string_view text, std::size_t used, std::size_t indent);

}  // namespace chimewerk
