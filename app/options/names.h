// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace chimewerk {

/// What a user may type to mean one thing.
struct Name {
    std::string name;
    /// Another name, such as the one that the windows show; may be empty.
    std::string alias = {};
};

/// Returns the index of the name that the user means: the one typed exactly, or else the first that
/// differs only in case, spaces, hyphens and underscores, also as an alias. None if there is none.
std::optional<std::size_t> findName(std::string_view typed, std::span<const Name> names);

/// Returns the three names (or all, if fewer) that are most like what was typed, likeliest first.
std::vector<std::string> likelyNames(std::string_view typed, std::span<const Name> names);

/// Returns "Did you mean a, b or c?" for the likely names; `names` must not be empty.
std::string didYouMean(std::string_view typed, std::span<const Name> names);

}  // namespace chimewerk
