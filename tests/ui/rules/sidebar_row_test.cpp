#include "ui/rules/sidebar_row.h"

#include <gtest/gtest.h>

#include "support/sound_library.h"

namespace chimewerk {
namespace {

class TheSidebarRow : public testing::Test {
protected:
    SidebarRow row(std::string_view id, bool isAppleSilicon = false) {
        return sidebarRow(library.event(id), *library, isAppleSilicon);
    }

    SoundLibrary library;
};

TEST_F(TheSidebarRow, SaysWhereTheSoundComesFrom) {
    struct Case {
        std::optional<std::string> path;
        bool custom;
        SoundTheme theme;
        const char* hint;
    };
    const Case cases[] = {
        {std::nullopt, false, SoundTheme::classic, "🍎 Classic"},
        {"", false, SoundTheme::soft, "🎵 Soft"},
        {std::nullopt, false, SoundTheme::system, "System"},
        {std::nullopt, true, SoundTheme::system, "— not set —"},
        {"", true, SoundTheme::system, "— not set —"},
        {"/Users/a/Sounds/knock.wav", true, SoundTheme::system, "knock.wav"},
        {"/Users/a/Sounds/knock.wav", false, SoundTheme::piano, "knock.wav"},
        {"/Users/a/Sounds/folder//", false, SoundTheme::piano, "folder"},
        {"bare.wav", false, SoundTheme::piano, "bare.wav"},
        {"/", false, SoundTheme::piano, "/"},
    };
    for (const Case& each : cases) {
        library.event("slap").soundPath = each.path;
        library->activeCustomThemeID =
            each.custom ? std::optional<std::string>("gone") : std::nullopt;
        library->currentTheme = each.theme;
        EXPECT_EQ(row("slap").hint, each.hint) << each.path.value_or("no path");
    }
}

TEST_F(TheSidebarRow, CountsFromTheFirstTimeAndDimsWhatIsOff) {
    EXPECT_EQ(
        row("slap"),
        (SidebarRow{
            .emoji = "👊", .name = "Single Knock", .hint = "🍎 Classic", .badge = "", .isOn = true}));
    library.event("slap").triggerCount = 1;
    EXPECT_EQ(row("slap").badge, "1×");
    library.event("slap").isEnabled = false;
    library.event("slap").triggerCount = 12;
    EXPECT_EQ(row("slap"), (SidebarRow{.emoji = "👊",
                                       .name = "Single Knock",
                                       .hint = "🍎 Classic",
                                       .badge = "12×",
                                       .alpha = 0.4,
                                       .isOn = false}));
    EXPECT_EQ(spokenSidebarRow(row("slap")), "Single Knock, 🍎 Classic, 12×");
    library.event("slap").triggerCount = -1;
    EXPECT_EQ(row("slap").badge, "");
}

TEST_F(TheSidebarRow, LocksOnlyTheLidAngleAndOnlyWhereItCannotWork) {
    EXPECT_EQ(row("lid_angle").isOn, std::nullopt);
    EXPECT_EQ(row("lid_angle").alpha, 0.4);
    library.event("lid_angle").isEnabled = true;
    EXPECT_EQ(row("lid_angle").isOn, std::nullopt);
    EXPECT_EQ(row("lid_angle", true).isOn, true);
    EXPECT_EQ(row("lid_open").isOn, true);
}

TEST(TheSidebarRowLayout, GivesTheTextsWhatTheRowIsWider) {
    const SidebarRowLayout basic = sidebarRowLayout(200);
    EXPECT_EQ(basic.emoji, (RowFrame{10, 8, 36, 30}));
    EXPECT_EQ(basic.name, (RowFrame{52, 8, 108, 18}));
    EXPECT_EQ(basic.hint, (RowFrame{52, 30, 100, 16}));
    EXPECT_EQ(basic.badge, (RowFrame{152, 30, 26, 16}));
    EXPECT_EQ(basic.lock, (RowFrame{180, 17, 22, 20}));
    EXPECT_EQ(basic.checkBox, (RowFrame{183, 19, 16, 16}));
    const SidebarRowLayout wide = sidebarRowLayout(230);
    EXPECT_EQ(wide.emoji, basic.emoji);
    EXPECT_EQ(wide.hint, (RowFrame{52, 30, 130, 16}));
    EXPECT_EQ(wide.checkBox, (RowFrame{213, 19, 16, 16}));
}

}  // namespace
}  // namespace chimewerk
