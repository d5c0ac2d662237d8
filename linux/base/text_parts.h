// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>
#include <vector>

namespace chimewerk {

/// Returns what stands before, between and behind the separators; nothing for what is behind the
/// last one if that is empty, as at the end of a file's last line. The parts point into `text`.
std::vector<std::string_view> split(std::string_view text, char separator);

/// Returns the parts between spaces, tabs and line ends. They point into `text`.
std::vector<std::string_view> words(std::string_view text);

}  // namespace chimewerk
