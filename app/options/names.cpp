// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/options/names.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace chimewerk {

namespace {

constexpr std::size_t kLikely = 3;

/// Returns the text in lower case and without spaces, hyphens and underscores.
std::string simplified(std::string_view text) {
    std::string simple;
    for (const char letter : text) {
        if (letter >= 'A' && letter <= 'Z') {
            simple += static_cast<char>(letter - 'A' + 'a');
        } else if (letter != ' ' && letter != '-' && letter != '_') {
            simple += letter;
        }
    }
    return simple;
}

/// Returns how many letters must be added, removed or replaced to make one text of the other.
std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

/// Returns how unlike two texts are. A part of a name is more like it than any misspelling; of two
/// equal misspellings the one with the right beginning is more like it.
int unlikeness(std::string_view typed, std::string_view name) {
    constexpr int kEdit = 4;
    constexpr int kPart = 2;
    if (typed.empty() || name.empty()) {
        return kEdit * static_cast<int>(std::max(typed.size(), name.size()));
    }
    const bool isPart =
        name.find(typed) != std::string_view::npos || typed.find(name) != std::string_view::npos;
    const auto common = std::ranges::mismatch(typed, name).in1 - typed.begin();
    const int beginning = std::min(static_cast<int>(common), kEdit - 1);
    return (isPart ? kPart : kEdit * static_cast<int>(editDistance(typed, name))) - beginning;
}

}  // namespace

std::optional<std::size_t> findName(std::string_view typed, std::span<const Name> names) {
    const auto exact = std::ranges::find(names, typed, &Name::name);
    const std::string simple = simplified(typed);
    const auto meant = [&](const Name& one) {
        return simplified(one.name) == simple ||
               (!one.alias.empty() && simplified(one.alias) == simple);
    };
    const auto found = exact != names.end() ? exact : std::ranges::find_if(names, meant);
    return found == names.end()
               ? std::nullopt
               : std::optional<std::size_t>(static_cast<std::size_t>(found - names.begin()));
}

std::vector<std::string> likelyNames(std::string_view typed, std::span<const Name> names) {
    const std::string simple = simplified(typed);
    std::vector<std::pair<int, std::size_t>> ranked;
    for (const Name& one : names) {
        const int byName = unlikeness(simple, simplified(one.name));
        const int byAlias = one.alias.empty() ? byName : unlikeness(simple, simplified(one.alias));
        ranked.emplace_back(std::min(byName, byAlias), ranked.size());
    }
    std::ranges::sort(ranked);
    std::vector<std::string> likely;
    for (const auto& [unlike, index] : std::span(ranked).first(std::min(kLikely, ranked.size()))) {
        likely.push_back(names[index].name);
    }
    return likely;
}

std::string didYouMean(std::string_view typed, std::span<const Name> names) {
    const std::vector<std::string> likely = likelyNames(typed, names);
    std::string text = "Did you mean ";
    for (std::size_t i = 0; i < likely.size(); ++i) {
        const bool isLast = i + 1 == likely.size();
        text += (i == 0 ? "" : isLast ? " or " : ", ") + likely[i];
    }
    return text + "?";
}

}  // namespace chimewerk
