// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "support/sound_library.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Path = std::optional<std::string>;

/// A library with the theme `soft`, in which the knock has the file "/own".
class ThemeManagement : public testing::Test {
protected:
    ThemeManagement() {
        library->setTheme(SoundTheme::soft);
        library->setPath("/own", "slap");
        library.announced();
        library.defaults.changes = 0;
    }

    Path knock() { return library.event("slap").soundPath; }
    /// Returns the id of the selected custom theme, else the raw value of the built-in one.
    std::string selected() {
        EXPECT_TRUE(!library->activeCustomThemeID || library->currentTheme == SoundTheme::system);
        return library->activeCustomThemeID.value_or(std::string(rawValue(library->currentTheme)));
    }
    const ThemeSounds::Map& soundsOf(std::size_t index) {
        return library->customThemes.at(index).sounds.entries();
    }

    SoundLibrary library;
};

TEST_F(ThemeManagement, IgnoresUnknownIdentifiersWithoutStoringOrAnnouncing) {
    const auto before = library->events;
    library->setPath("/x", "no_such");
    library->setVolume(0, "no_such");
    library->setEnabled(false, "no_such");
    library->setThreshold(0, "no_such");
    library->renameCustomTheme("no_such", "x");
    EXPECT_EQ(library->events, before);
    EXPECT_EQ(library.defaults.changes, 0);
    EXPECT_THAT(library.announced(), IsEmpty());

    library->deleteCustomTheme("no_such");
    EXPECT_GT(library.defaults.changes, 0);
    EXPECT_THAT(library.announced(), ElementsAre("none"));
    EXPECT_EQ(knock(), "/own");
}

TEST_F(ThemeManagement, StoresValuesUnchecked) {
    library->setVolume(7.5F, "slap");
    library->setThreshold(-1, "lid_angle");
    EXPECT_EQ(library.event("slap").volume, 7.5F);
    EXPECT_EQ(library.event("lid_angle").threshold, -1);
    library->setPath(std::nullopt, "slap");
    EXPECT_EQ(knock(), std::nullopt);
    EXPECT_THAT(library.announced(), IsEmpty());
}

TEST_F(ThemeManagement, RemovesTheEventsFilesForEveryBuiltInThemeExceptSystem) {
    library->setTheme(SoundTheme::system);
    EXPECT_EQ(knock(), "/own");
    for (const SoundTheme theme : kAllThemes) {
        library->setPath("/own", "slap");
        library->setTheme(theme);
        EXPECT_EQ(knock(), theme == SoundTheme::system ? Path("/own") : std::nullopt)
            << rawValue(theme);
    }
    EXPECT_THAT(library.announced(), ElementsAre("system", "system", "8bit", "soft", "scifi",
                                                 "classic", "trad", "piano"));
    EXPECT_EQ(selected(), "piano");
}

TEST_F(ThemeManagement, AnnouncesAChangeAfterStoringIt) {
    bool stored = false;
    const auto listening = library.notifications.observe(themeDidChange, [&](const Notification&) {
        stored = library.defaults.values.at("ChimewerkTheme") == DefaultsValue{std::string("trad")};
    });
    library->setTheme(SoundTheme::trad);
    EXPECT_FALSE(stored);
    library.queue.runPosted();
    EXPECT_TRUE(stored);
}

TEST_F(ThemeManagement, CreatesAnEmptyThemeAndSelectsIt) {
    const CustomTheme made = library->createCustomTheme(" ");
    EXPECT_EQ(made, (CustomTheme{.id = "A", .name = " ", .sounds = {}}));
    EXPECT_THAT(library->customThemes, ElementsAre(made));
    EXPECT_EQ(selected(), "A");
    EXPECT_EQ(knock(), std::nullopt);
    EXPECT_THAT(library.announced(), ElementsAre("none"));
}

TEST_F(ThemeManagement, SavesTheFilesOfAThemeAndRestoresThem) {
    library->createCustomTheme("a");
    library->setPath("/a", "slap");
    EXPECT_EQ(soundsOf(0), (ThemeSounds::Map{{"slap", "/a"}}));
    library->setPath(std::nullopt, "slap");
    EXPECT_EQ(soundsOf(0), (ThemeSounds::Map{{"slap", ""}}));
    library->setPath("/a", "slap");

    library->createCustomTheme("b");
    EXPECT_EQ(knock(), std::nullopt);
    EXPECT_EQ(soundsOf(0).size(), 19U);
    EXPECT_EQ(soundsOf(0).at("usb_connect"), "");
    library->setCustomTheme(library->customThemes.at(0));
    EXPECT_EQ(knock(), "/a");
    EXPECT_EQ(selected(), "A");

    library->setTheme(SoundTheme::system);
    EXPECT_EQ(knock(), "/a");
    EXPECT_EQ(selected(), "system");
    library->setTheme(SoundTheme::piano);
    EXPECT_EQ(knock(), std::nullopt);
    EXPECT_EQ(soundsOf(0).at("slap"), "/a");
}

TEST_F(ThemeManagement, AppliesTheRecordThatIsPassedEvenIfTheWriteBackChangesItsElement) {
    library->createCustomTheme("a");
    library.event("slap").soundPath = "/unsaved";
    library->setCustomTheme(library->customThemes.at(0));
    EXPECT_EQ(knock(), std::nullopt);
    EXPECT_EQ(soundsOf(0).at("slap"), "/unsaved");

    library->setCustomTheme({.id = "unlisted", .name = "", .sounds = {{"slap", "/u"}}});
    EXPECT_EQ(selected(), "unlisted");
    EXPECT_EQ(knock(), "/u");
    library.restart();
    EXPECT_EQ(selected(), "system");
    EXPECT_EQ(knock(), "/u");
}

TEST_F(ThemeManagement, RenamesWithoutTouchingTheSelection) {
    library->createCustomTheme("a");
    library.announced();
    library->renameCustomTheme("A", "");
    EXPECT_EQ(library->customThemes.at(0).name, "");
    EXPECT_EQ(selected(), "A");
    EXPECT_THAT(library.announced(), IsEmpty());
}

TEST_F(ThemeManagement, FallsBackToClassicOnlyWhenTheSelectedThemeIsDeleted) {
    library.themeIds = {"A", "B", "B"};
    library->createCustomTheme("a");
    library->setPath("/a", "slap");
    library->createCustomTheme("b");
    library->createCustomTheme("b again");
    library->setCustomTheme(library->customThemes.at(0));
    library->deleteCustomTheme(library->customThemes.at(1).id);
    EXPECT_EQ(library->customThemes.size(), 1U);
    EXPECT_EQ(selected(), "A");
    EXPECT_EQ(knock(), "/a");

    library.announced();
    library->deleteCustomTheme(*library->activeCustomThemeID);
    EXPECT_THAT(library->customThemes, IsEmpty());
    EXPECT_EQ(selected(), "classic");
    EXPECT_EQ(knock(), std::nullopt);
    EXPECT_THAT(library.announced(), ElementsAre("none"));
    EXPECT_EQ(library.defaults.values.at("ChimewerkCustomThemes"),
              DefaultsValue{DefaultsData{"[]"}});
}

TEST_F(ThemeManagement, SwitchesTheFileManagersSoundsOnOnlyWhenBothTrashEventsAreOff) {
    library->setEnabled(false, "trash_add");
    library->setEnabled(false, "trash_empty");
    library->setEnabled(false, "trash_empty");
    library->setEnabled(true, "trash_empty");
    library->setEnabled(false, "slap");
    EXPECT_THAT(library.fileManager.calls, ElementsAre(false, true, true, false));
    EXPECT_FALSE(library.event("slap").isEnabled);
}

TEST(ARandomUuid, IsOfVersion4InUpperCaseAndNeverTheSame) {
    const std::regex canonical(
        "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> seen;
    for (int i = 0; i < 200; ++i) {
        const std::string uuid = randomUuid();
        EXPECT_TRUE(std::regex_match(uuid, canonical)) << uuid;
        EXPECT_TRUE(seen.insert(uuid).second) << uuid;
    }
}

}  // namespace
}  // namespace chimewerk
