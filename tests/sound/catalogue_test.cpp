// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <set>

#include "sound/custom_theme.h"
#include "sound/sound_event.h"
#include "sound/sound_theme.h"
#include "support/sound_library.h"

namespace chimewerk {
namespace {

TEST(TheEventTable, HoldsTheNineteenEventsInOrderWithTheirFactorySwitches) {
    const auto events = factoryEvents();
    std::string switches;
    std::set<std::string> ids;
    for (const SoundEvent& event : events) {
        switches += event.id + (event.isEnabled ? "+ " : "- ");
        ids.insert(event.id);
        EXPECT_EQ(event.soundPath, std::nullopt) << event.id;
        EXPECT_EQ(event.triggerCount, 0) << event.id;
    }
    EXPECT_EQ(
        switches,
        "slap+ lid_open+ lid_close+ lid_angle- charger_connect+ charger_disconnect+ brightness_up+ "
        "brightness_down+ key_press- volume_up- volume_down- screenshot- app_launch- trash_empty+ "
        "trash_add+ network_up- network_down- battery_low+ usb_connect- ");
    EXPECT_EQ(ids.size(), events.size());
    EXPECT_EQ(events.at(3).threshold, 90.0F);
}

TEST(TheThemes, RoundTripThroughTheirRawValues) {
    for (const SoundTheme theme : kAllThemes) {
        EXPECT_EQ(themeFromRawValue(rawValue(theme)), theme);
        EXPECT_EQ(themeFromRawValue(displayName(theme)), std::nullopt);
    }
    EXPECT_EQ(rawValue(SoundTheme::bit8), "8bit");
    EXPECT_EQ(kAllThemes.front(), SoundTheme::system);
    EXPECT_EQ(kAllThemes.back(), SoundTheme::piano);
    for (const char* const wrong : {"", "8BIT", "Classic", "classic ", "bit8"}) {
        EXPECT_EQ(themeFromRawValue(wrong), std::nullopt) << wrong;
    }
}

TEST(ACustomTheme, RoundTripsThroughJson) {
    const std::vector<CustomTheme> themes = {
        {.id = "A", .name = "Büro \"1\"\n", .sounds = {{"slap", "/a/ü.wav"}, {"lid_open", ""}}},
        {.id = "", .name = "", .sounds = {}},
        {.id = "not UTF-8", .name = "\xC3", .sounds = {{"\xFF", "/home/j\xFCrgen/a.wav"}}},
    };
    EXPECT_EQ(decodeCustomThemes(encodeCustomThemes(themes)), themes);
    EXPECT_EQ(encodeCustomThemes({}), "[]");
}

TEST(ACustomTheme, IsRefusedWithItsWholeListWhenAnyPartIsMissingOrOfAnotherType) {
    const std::string good = R"({"id":"A","name":"n","sounds":{"slap":"/x"}})";
    ASSERT_TRUE(decodeCustomThemes("[" + good + "]"));
    for (const std::string bad : {
             R"({"id":"A","name":"n"})",
             R"({"id":"A","sounds":{}})",
             R"({"name":"n","sounds":{}})",
             R"({"id":1,"name":"n","sounds":{}})",
             R"({"id":"A","name":null,"sounds":{}})",
             R"({"id":"A","name":"n","sounds":[]})",
             R"({"id":"A","name":"n","sounds":null})",
             R"({"id":"A","name":"n","sounds":[["slap","/x"]]})",
             R"({"id":"A","name":"n","sounds":{"slap":1}})",
             R"("text")",
             R"(null)",
             R"({"id":"A")",
         }) {
        EXPECT_EQ(decodeCustomThemes("[" + good + "," + bad + "]"), std::nullopt) << bad;
    }
    for (const std::string bad : {"", "{}", "null", "3", "[", "\xFF"}) {
        EXPECT_EQ(decodeCustomThemes(bad), std::nullopt) << bad;
    }
}

TEST(TheSoundManager, FindsItsSelectedCustomTheme) {
    SoundLibrary library;
    SoundManager& manager = *library;
    EXPECT_EQ(manager.activeCustomTheme(), nullptr);
    manager.customThemes = {{.id = "A", .name = "first", .sounds = {}},
                            {.id = "A", .name = "second", .sounds = {}}};
    manager.activeCustomThemeID = "A";
    ASSERT_NE(manager.activeCustomTheme(), nullptr);
    EXPECT_EQ(manager.activeCustomTheme()->name, "first");
    manager.activeCustomThemeID = "gone";
    EXPECT_TRUE(manager.isCustomThemeActive());
    EXPECT_EQ(manager.activeCustomTheme(), nullptr);
}

}  // namespace
}  // namespace chimewerk
