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
    /// What the item stands for, see `themeChoice()`; none for a separator.
    std::optional<int> tag = std::nullopt;

    bool operator==(const ThemeMenuItem&) const = default;
};

/// The theme row: the menu, and which item shows. No two items have the same title.
struct ThemeMenu {
    std::vector<ThemeMenuItem> items;
    std::size_t selected = 0;
    /// Whether the buttons that rename and delete the theme in use are there.
    bool showsThemeButtons = false;

    bool operator==(const ThemeMenu&) const = default;
};

/// The menu for what the library has now.
ThemeMenu themeMenu(const SoundManager& sounds);

/// What an item's tag stands for.
struct ThemeChoice {
    enum class Kind { builtIn, custom, newTheme, none };

    Kind kind = Kind::none;
    /// In `kAllThemes` or in the custom themes, within their bounds.
    std::size_t position = 0;

    bool operator==(const ThemeChoice&) const = default;
};

/// Among so many custom themes; `none` for a tag that no item has.
ThemeChoice themeChoice(int tag, std::size_t customThemes);

}  // namespace chimewerk
