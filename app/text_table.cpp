// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/text_table.h"

#include <algorithm>
#include <cstddef>

namespace chimewerk {

namespace {

constexpr std::size_t kGap = 2;

std::size_t columnsOf(std::string_view text) {
    const auto startsCharacter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    };
    return static_cast<std::size_t>(std::ranges::count_if(text, startsCharacter));
}

}  // namespace

std::string textTable(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], columnsOf(row[i]));
        }
    }
    std::string text;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool isLast = i + 1 == row.size();
            text += row[i];
            text.append(isLast ? 0 : widths[i] - columnsOf(row[i]) + kGap, ' ');
        }
        text += '\n';
    }
    return text;
}

}  // namespace chimewerk
