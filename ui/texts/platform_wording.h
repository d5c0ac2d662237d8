// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <span>
#include <string>
#include <string_view>

namespace chimewerk {

/// Stands in a given text and in its wording for what changes, such as a number.
inline constexpr std::string_view kPlaceholder = "{}";

/// What the windows show here in place of a text of the rules that is not true on this platform. A
/// text that is true everywhere has none.
struct PlatformWording {
    /// As the rules have it, UTF-8. At most one placeholder.
    std::string_view given;
    /// A whole sentence with as many placeholders. "{version}" and "{architecture}" are those of
    /// the build; "[…]" is a link to the manual. Empty if there is nothing to be said here.
    std::string_view shown;
};

std::span<const PlatformWording> platformWordings();

/// Returns what the windows show in place of a text of the rules: the text itself if it is true
/// here, nothing if there is nothing to be said.
std::string platformWording(std::string_view text);

}  // namespace chimewerk
