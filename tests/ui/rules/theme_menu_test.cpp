// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/theme_menu.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/sound_library.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;

const ThemeMenuItem kSeparator{};
const ThemeMenuItem kNewTheme{"+ New Theme…", 3000};

class TheThemeMenu : public testing::Test {
protected:
    /// Creates custom themes with these names and the ids "0", "1", ... and selects the one with
    /// the id `active`, if given.
    void setThemes(const std::vector<std::string>& names,
                   std::optional<std::string> active = std::nullopt) {
        library->customThemes.clear();
        for (const std::string& name : names) {
            library->customThemes.push_back(
                {.id = std::to_string(library->customThemes.size()), .name = name, .sounds = {}});
        }
        library->activeCustomThemeID = std::move(active);
        library->currentTheme =
            library->isCustomThemeActive() ? SoundTheme::system : SoundTheme::classic;
    }
    /// Returns the items after the built-in themes.
    std::vector<ThemeMenuItem> rest() {
        const std::vector<ThemeMenuItem> all = themeMenu(*library).items;
        return {all.begin() + 7, all.end()};
    }
    void expectShown(const std::string& title, bool withButtons) {
        const ThemeMenu menu = themeMenu(*library);
        EXPECT_EQ(menu.items.at(menu.selected).title, title);
        EXPECT_EQ(menu.showsThemeButtons, withButtons) << title;
    }

    SoundLibrary library;
};

TEST_F(TheThemeMenu, HoldsTheBuiltInThemesAndAWayToANewOne) {
    EXPECT_THAT(
        themeMenu(*library).items,
        ElementsAre(ThemeMenuItem{"System", 1000}, ThemeMenuItem{"🎮 8-bit", 1001},
                    ThemeMenuItem{"🎵 Soft", 1002}, ThemeMenuItem{"🚀 Sci-Fi", 1003},
                    ThemeMenuItem{"🍎 Classic", 1004}, ThemeMenuItem{"🪵 Traditional", 1005},
                    ThemeMenuItem{"🎹 Piano", 1006}, kSeparator, kNewTheme));
    expectShown("🍎 Classic", false);
}

TEST_F(TheThemeMenu, ShowsTheThemeInUse) {
    setThemes({"Focus", "Night"}, "1");
    EXPECT_THAT(rest(), ElementsAre(kSeparator, ThemeMenuItem{"👤 Focus", 2000},
                                    ThemeMenuItem{"👤 Night", 2001}, kSeparator, kNewTheme));
    expectShown("👤 Night", true);
    setThemes({"Focus"}, "gone");
    expectShown("System", true);
    setThemes({"Focus"});
    expectShown("🍎 Classic", false);
}

TEST_F(TheThemeMenu, ShowsOnlyTheLastThemeOfAName) {
    setThemes({"Same", "Other", "Same", "System"}, "0");
    EXPECT_THAT(rest(), ElementsAre(kSeparator, ThemeMenuItem{"👤 Other", 2001},
                                    ThemeMenuItem{"👤 Same", 2002}, ThemeMenuItem{"👤 System", 2003},
                                    kSeparator, kNewTheme));
    expectShown("👤 Same", true);
}

TEST_F(TheThemeMenu, OffersEveryThemeHoweverMany) {
    std::vector<std::string> names;
    for (int i = 0; i < 1002; ++i) {
        names.push_back(std::to_string(i));
    }
    setThemes(names, "1001");
    expectShown("👤 1001", true);
    std::size_t position = 0;
    for (const ThemeMenuItem& item : rest()) {
        if (item.title.starts_with("👤")) {
            EXPECT_EQ(themeChoice(*item.tag, names.size()),
                      (ThemeChoice{ThemeChoice::Kind::custom, position}));
            ++position;
        }
    }
    EXPECT_EQ(position, names.size());
    EXPECT_EQ(rest().back(), kNewTheme);
}

TEST(TheThemeTag, IsInvalidOutsideTheMenu) {
    for (const int tag : {std::numeric_limits<int>::min(), -1, 0, 999, 1007, 1999, 2002, 2999, 3001,
                          std::numeric_limits<int>::max()}) {
        EXPECT_EQ(themeChoice(tag, 2), ThemeChoice{}) << tag;
    }
}

}  // namespace
}  // namespace chimewerk
