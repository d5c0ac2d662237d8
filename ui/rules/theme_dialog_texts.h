// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// The texts of a question to the user. Beside the button that confirms there is one that cancels.
struct DialogTexts {
    std::string message;
    std::string informative;
    std::string confirm;

    bool operator==(const DialogTexts&) const = default;
};

inline constexpr char kCancelTitle[] = "Cancel";
/// Shown in the empty field for a new theme's name.
inline constexpr char kNewThemePlaceholder[] = "My Theme";

DialogTexts newThemeTexts();
DialogTexts renameThemeTexts();
DialogTexts deleteThemeTexts(const std::string& themeName);

/// A typed name without the spaces at both ends: tabs and every kind of space, but no line break.
/// UTF-8; bytes that are not valid stay as they are.
std::string trimmedThemeName(std::string_view name);

}  // namespace chimewerk
