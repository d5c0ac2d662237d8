// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// The texts of a question to the user. Besides the confirming button there is one that cancels.
struct DialogTexts {
    std::string message;
    std::string informative;
    std::string confirm;

    bool operator==(const DialogTexts&) const = default;
};

inline constexpr char kCancelTitle[] = "Cancel";
/// The placeholder of the field for a new theme's name.
inline constexpr char kNewThemePlaceholder[] = "My Theme";

DialogTexts newThemeTexts();
DialogTexts renameThemeTexts();
DialogTexts deleteThemeTexts(const std::string& themeName);

/// Returns a typed name without spaces at its ends: tabs and every kind of space, but not line
/// breaks. UTF-8; invalid bytes are kept.
std::string trimmedThemeName(std::string_view name);

}  // namespace chimewerk
