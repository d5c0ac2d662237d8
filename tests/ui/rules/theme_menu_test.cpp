#include "ui/rules/theme_menu.h"

#include <gmock/gmock.h>

#include "support/sound_library.h"
#include "ui/rules/dialog_texts.h"
#include "ui/rules/theme_name.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;

const ThemeMenuItem kSeparator{};

class TheThemeMenu : public testing::Test {
protected:
    /// Custom themes of these names with the ids "0", "1", ...; the one in use, if any.
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
    /// The items after the built-in themes.
    std::vector<ThemeMenuItem> rest() {
        const std::vector<ThemeMenuItem> all = themeMenu(*library).items;
        return {all.begin() + 7, all.end()};
    }
    std::string shown() {
        const ThemeMenu menu = themeMenu(*library);
        return menu.items.at(menu.selected).title;
    }

    SoundLibrary library;
};

TEST_F(TheThemeMenu, HoldsTheBuiltInThemesAndAWayToANewOne) {
    const ThemeMenu menu = themeMenu(*library);
    EXPECT_THAT(menu.items,
                ElementsAre(ThemeMenuItem{"System", 1000}, ThemeMenuItem{"🎮 8-bit", 1001},
                            ThemeMenuItem{"🎵 Soft", 1002}, ThemeMenuItem{"🚀 Sci-Fi", 1003},
                            ThemeMenuItem{"🍎 Classic", 1004},
                            ThemeMenuItem{"🪵 Traditional", 1005}, ThemeMenuItem{"🎹 Piano", 1006},
                            kSeparator, ThemeMenuItem{"+ New Theme…", 3000}));
    EXPECT_EQ(menu.selected, 4U);
    EXPECT_FALSE(menu.showsThemeButtons);
}

TEST_F(TheThemeMenu, ShowsTheThemeInUse) {
    setThemes({"Focus", "Night"}, "1");
    EXPECT_THAT(rest(), ElementsAre(kSeparator, ThemeMenuItem{"👤 Focus", 2000},
                                    ThemeMenuItem{"👤 Night", 2001}, kSeparator,
                                    ThemeMenuItem{"+ New Theme…", 3000}));
    EXPECT_EQ(shown(), "👤 Night");
    EXPECT_TRUE(themeMenu(*library).showsThemeButtons);

    setThemes({"Focus"}, "gone");
    EXPECT_EQ(shown(), "System");
    EXPECT_TRUE(themeMenu(*library).showsThemeButtons);

    setThemes({"Focus"});
    EXPECT_EQ(shown(), "🍎 Classic");
    EXPECT_FALSE(themeMenu(*library).showsThemeButtons);
}

TEST_F(TheThemeMenu, HasOneItemForANameThatOfTheLaterTheme) {
    setThemes({"Same", "Other", "Same", "System"}, "0");
    EXPECT_THAT(rest(), ElementsAre(kSeparator, ThemeMenuItem{"👤 Other", 2001},
                                    ThemeMenuItem{"👤 Same", 2002}, ThemeMenuItem{"👤 System", 2003},
                                    kSeparator, ThemeMenuItem{"+ New Theme…", 3000}));
    EXPECT_EQ(shown(), "👤 Same");
}

TEST_F(TheThemeMenu, LetsEveryThemeBeChosenHoweverManyThereAre) {
    std::vector<std::string> names;
    for (int i = 0; i < 1002; ++i) {
        names.push_back(std::to_string(i));
    }
    setThemes(names, "1001");
    EXPECT_EQ(shown(), "👤 1001");
    std::size_t position = 0;
    for (const ThemeMenuItem& item : rest()) {
        if (item.title.starts_with("👤")) {
            EXPECT_EQ(themeChoice(*item.tag, names.size()),
                      (ThemeChoice{ThemeChoice::Kind::custom, position}));
            ++position;
        }
    }
    EXPECT_EQ(position, names.size());
    EXPECT_EQ(rest().back().tag, 3000);
}

TEST(TheThemeTag, MeansNothingOutsideOfWhatIsThere) {
    using Kind = ThemeChoice::Kind;
    struct Case {
        int tag;
        ThemeChoice choice;
    };
    const Case cases[] = {{1000, {Kind::builtIn, 0}},
                          {1006, {Kind::builtIn, 6}},
                          {1007, {}},
                          {1999, {}},
                          {2000, {Kind::custom, 0}},
                          {2001, {Kind::custom, 1}},
                          {2002, {}},
                          {2999, {}},
                          {3000, {Kind::newTheme}},
                          {3001, {}},
                          {999, {}},
                          {0, {}},
                          {-1, {}},
                          {2147483647, {}},
                          {-2147483647 - 1, {}}};
    for (const Case& each : cases) {
        EXPECT_EQ(themeChoice(each.tag, 2), each.choice) << each.tag;
    }
}

TEST(TheThemeName, LosesSpacesAndTabsAtItsEndsButNoLineBreak) {
    struct Case {
        const char* typed;
        const char* name;
    };
    const Case cases[] = {{"  Focus  ", "Focus"},
                          {"\t a \t b\t", "a \t b"},
                          {"   ", ""},
                          {"", ""},
                          {"\u00A0\u1680\u2000\u200A\u202F\u205F\u3000名\u3000", "名"},
                          {"\n Focus \n", "\n Focus \n"},
                          {"\u200BFocus\u2028", "\u200BFocus\u2028"},
                          {"à", "à"},
                          {"\xA0", "\xA0"}};
    for (const Case& each : cases) {
        EXPECT_EQ(trimmedThemeName(each.typed), each.name);
    }
}

TEST(TheThemeDialogs, AskWithTheseTexts) {
    EXPECT_EQ(newThemeTexts(),
              (DialogTexts{"New Custom Theme", "Enter a name for your new theme:", "Create"}));
    EXPECT_EQ(renameThemeTexts(), (DialogTexts{"Rename Theme", "Enter a new name:", "Rename"}));
    EXPECT_EQ(deleteThemeTexts("A \"B\""),
              (DialogTexts{"Delete \"A \"B\"\"?", "This will permanently remove this custom theme.",
                           "Delete"}));
}

}  // namespace
}  // namespace chimewerk
