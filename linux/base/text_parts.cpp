// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/text_parts.h"

#include <algorithm>

namespace chimewerk {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::vector<std::string_view> words(std::string_view text) {
    constexpr std::string_view kSpace = " \t\n\v\f\r";
    std::vector<std::string_view> parts;
    std::size_t end = 0;
    for (std::size_t start = 0;
         (start = text.find_first_not_of(kSpace, end)) != std::string_view::npos;) {
        end = std::min(text.find_first_of(kSpace, start), text.size());
        parts.push_back(text.substr(start, end - start));
    }
    return parts;
}

}  // namespace chimewerk
