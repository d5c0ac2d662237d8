// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/theme_menu.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_set>

namespace chimewerk {

namespace {

constexpr int kFirstBuiltIn = 1000;
constexpr int kFirstCustom = 2000;
constexpr int kNewTheme = 3000;
/// Custom themes beyond this number have tags above that of the new theme.
constexpr int kCustomsBelowNewTheme = kNewTheme - kFirstCustom;

int customTag(std::size_t position) {
    const int number = static_cast<int>(position);
    return kFirstCustom + number + (number < kCustomsBelowNewTheme ? 0 : 1);
}

std::string customTitle(const CustomTheme& theme) {
    return "👤 " + theme.name;
}

/// Returns which themes have a menu item: of themes with the same name, only the last.
std::vector<bool> haveItems(const std::vector<CustomTheme>& themes) {
    std::vector<bool> have(themes.size());
    std::unordered_set<std::string_view> laterNames;
    for (std::size_t i = themes.size(); i-- > 0;) {
        have[i] = laterNames.insert(themes[i].name).second;
    }
    return have;
}

std::size_t positionOf(const std::vector<ThemeMenuItem>& items, const std::string& title) {
    const auto found = std::ranges::find(items, title, &ThemeMenuItem::title);
    return static_cast<std::size_t>(found - items.begin());
}

std::size_t selectedItem(const std::vector<ThemeMenuItem>& items, const SoundManager& sounds) {
    if (const CustomTheme* const active = sounds.activeCustomTheme()) {
        return positionOf(items, customTitle(*active));
    }
    return static_cast<std::size_t>(std::ranges::find(kAllThemes, sounds.currentTheme) -
                                    kAllThemes.begin());
}

}  // namespace

ThemeMenu themeMenu(const SoundManager& sounds) {
    ThemeMenu menu;
    for (std::size_t i = 0; i < kAllThemes.size(); ++i) {
        menu.items.push_back(
            {std::string(displayName(kAllThemes[i])), kFirstBuiltIn + static_cast<int>(i)});
    }
    if (!sounds.customThemes.empty()) {
        menu.items.push_back({});
    }
    const std::vector<bool> has = haveItems(sounds.customThemes);
    for (std::size_t i = 0; i < has.size(); ++i) {
        if (has[i]) {
            menu.items.push_back({customTitle(sounds.customThemes[i]), customTag(i)});
        }
    }
    menu.items.push_back({});
    menu.items.push_back({"+ New Theme…", kNewTheme});
    menu.selected = selectedItem(menu.items, sounds);
    menu.showsThemeButtons = sounds.isCustomThemeActive();
    return menu;
}

ThemeChoice themeChoice(int tag, std::size_t customThemes) {
    if (tag == kNewTheme) {
        return {.kind = ThemeChoice::Kind::newTheme};
    }
    const bool custom = tag >= kFirstCustom;
    const std::int64_t position =
        std::int64_t{tag} - (custom ? kFirstCustom : kFirstBuiltIn) - (tag > kNewTheme ? 1 : 0);
    if (position < 0 ||
        static_cast<std::size_t>(position) >= (custom ? customThemes : kAllThemes.size())) {
        return {};
    }
    return {.kind = custom ? ThemeChoice::Kind::custom : ThemeChoice::Kind::builtIn,
            .position = static_cast<std::size_t>(position)};
}

}  // namespace chimewerk
