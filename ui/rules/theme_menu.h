// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "sound/sound_manager.h"

namespace chimewerk {

/// One line of the theme menu.
struct ThemeMenuItem {
    /// Empty for a separator.
    std::string title;
    /// Decoded by `themeChoice()`; none for a separator.
    std::optional<int> tag = std::nullopt;

    bool operator==(const ThemeMenuItem&) const = default;
};

/// The theme row: the menu and its selected item. No two items have the same title.
struct ThemeMenu {
    std::vector<ThemeMenuItem> items;
    std::size_t selected = 0;
    /// Whether the buttons that rename and delete the theme in use are shown.
    bool showsThemeButtons = false;

    bool operator==(const ThemeMenu&) const = default;
};

/// Returns the menu for the library's current themes.
ThemeMenu themeMenu(const SoundManager& sounds);

/// The meaning of an item's tag.
struct ThemeChoice {
    enum class Kind { builtIn, custom, newTheme, none };

    Kind kind = Kind::none;
    /// A valid index into `kAllThemes` or the custom themes.
    std::size_t position = 0;

    bool operator==(const ThemeChoice&) const = default;
};

/// Returns the meaning of a tag; `none` if no item has it. `customThemes` is the number of
/// custom themes.
ThemeChoice themeChoice(int tag, std::size_t customThemes);

}  // namespace chimewerk
