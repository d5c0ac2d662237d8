// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace chimewerk {

/// Returns the rows as lines whose cells stand below each other, two spaces apart; the last cell of a
/// row may have any length. UTF-8; one code point takes one column.
std::string textTable(const std::vector<std::vector<std::string>>& rows);

}  // namespace chimewerk
