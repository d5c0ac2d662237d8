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

class ThemeManagement : public testing::Test {
protected:
    SoundLibrary library;
};

// Random sessions on the real store, next to a model, check what each operation changes. These are
// the cases that they do not reach.

TEST_F(ThemeManagement, StoresNothingForUnknownIdentifiers) {
    library->setPath("/x", "no_such");
    library->setVolume(0, "no_such");
    library->setEnabled(false, "no_such");
    library->setThreshold(0, "no_such");
    library->renameCustomTheme("no_such", "x");
    EXPECT_EQ(library.defaults.changes, 0);
}

TEST_F(ThemeManagement, AppliesAndDeletesTheElementThatIsPassedAlthoughItChangesMeanwhile) {
    const CustomTheme made = library->createCustomTheme("a");
    EXPECT_THAT(library->customThemes, ElementsAre(made));
    library.event("slap").soundPath = "/unsaved";
    library->setCustomTheme(library->customThemes.at(0));
    EXPECT_EQ(library.event("slap").soundPath, std::nullopt);
    EXPECT_EQ(library->customThemes.at(0).sounds.entries().at("slap"), "/unsaved");
    library->deleteCustomTheme(*library->activeCustomThemeID);
    EXPECT_THAT(library->customThemes, IsEmpty());
    EXPECT_EQ(library->activeCustomThemeID, std::nullopt);
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
