// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/sidebar_row.h"

#include <gtest/gtest.h>

#include "support/sound_library.h"

namespace chimewerk {
namespace {

class TheSidebarRow : public testing::Test {
protected:
    SidebarRow row() { return sidebarRow(library.event("slap"), *library, false); }

    SoundLibrary library;
};

TEST_F(TheSidebarRow, ShowsTheSourceOfTheSound) {
    struct Case {
        std::optional<std::string> path;
        bool custom;
        SoundTheme theme;
        const char* hint;
    };
    for (const auto& [path, custom, theme, hint] : std::initializer_list<Case>{
             {std::nullopt, false, SoundTheme::classic, "🍎 Classic"},
             {"", false, SoundTheme::soft, "🎵 Soft"},
             {std::nullopt, true, SoundTheme::system, "— not set —"},
             {"", true, SoundTheme::system, "— not set —"},
             {"/Users/a/Sounds/knock.wav", true, SoundTheme::system, "knock.wav"},
             {"/Users/a/Sounds/folder//", false, SoundTheme::piano, "folder"}}) {
        library.event("slap").soundPath = path;
        library->activeCustomThemeID = custom ? std::optional<std::string>("gone") : std::nullopt;
        library->currentTheme = theme;
        EXPECT_EQ(row().hint, hint) << path.value_or("no path");
    }
}

TEST_F(TheSidebarRow, ShowsCountsAndDimsDisabledEvents) {
    SidebarRow expected{
        .emoji = "👊", .name = "Single Knock", .hint = "🍎 Classic", .badge = "", .isOn = true};
    EXPECT_EQ(row(), expected);
    library.event("slap").triggerCount = -1;
    EXPECT_EQ(row(), expected);
    library.event("slap").triggerCount = 12;
    expected.badge = "12×";
    EXPECT_EQ(row(), expected);
    library.event("slap").isEnabled = false;
    expected.alpha = 0.4;
    expected.isOn = false;
    EXPECT_EQ(row(), expected);
    EXPECT_EQ(spokenSidebarRow(row()), "Single Knock, 🍎 Classic, 12×");
}

TEST(TheSidebarRowLayout, GivesExtraWidthToTheTexts) {
    for (const int more : {0, 30}) {
        const SidebarRowLayout layout = sidebarRowLayout(200 + more);
        EXPECT_EQ(layout.emoji, (RowFrame{10, 8, 36, 30}));
        EXPECT_EQ(layout.name, (RowFrame{52, 8, 108 + more, 18}));
        EXPECT_EQ(layout.hint, (RowFrame{52, 30, 100 + more, 16}));
        EXPECT_EQ(layout.badge, (RowFrame{152 + more, 30, 26, 16}));
        EXPECT_EQ(layout.lock, (RowFrame{180 + more, 17, 22, 20}));
        EXPECT_EQ(layout.checkBox, (RowFrame{183 + more, 19, 16, 16}));
    }
}

}  // namespace
}  // namespace chimewerk
