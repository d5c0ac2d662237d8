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

std::string wrapped(std::string_view text, std::size_t used, std::size_t indent) {
    std::string lines;
    std::size_t column = used;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(text.size(), word.size() + 1));
        const bool isFirst = lines.empty();
        if (!isFirst && column + 1 + columnsOf(word) > kTerminalWidth) {
            lines.append("\n").append(indent, ' ');
            column = indent;
        } else if (!isFirst) {
            lines += ' ';
            ++column;
        }
        lines += word;
        column += columnsOf(word);
    }
    return lines;
}

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
        std::size_t column = 0;
        for (std::size_t i = 0; i + 1 < row.size(); ++i) {
            text += row[i];
            text.append(widths[i] - columnsOf(row[i]) + kGap, ' ');
            column += widths[i] + kGap;
        }
        text += (row.empty() ? "" : wrapped(row.back(), column, column)) + '\n';
    }
    return text;
}

}  // namespace chimewerk
