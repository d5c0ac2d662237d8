// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/texts/platform_wording.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "support/fake_sound_service.h"
#include "support/foreign_words.h"
#include "ui/rules/angle_gauge.h"
#include "ui/rules/detail_texts.h"
#include "ui/rules/detail_view.h"
#include "ui/rules/help_content.h"

namespace chimewerk {
namespace {

/// Returns every text that the rules can show on any machine.
std::set<std::string> givenTexts() {
    std::set<std::string> texts;
    for (const std::string_view text :
         {detail_texts::kPermission, detail_texts::kGrantButton, detail_texts::kLockTitle,
          detail_texts::kLockText, std::string_view(kHelpMotto),
          std::string_view(kHelpVersionLine)}) {
        texts.emplace(text);
    }
    for (const HelpParagraph& paragraph : helpContent()) {
        texts.insert(paragraph.text);
    }
    const auto events = factoryEvents();
    const FakeSoundService files;
    for (const bool yes : {true, false}) {
        for (const bool active : {true, false}) {
            for (const SoundEvent& event : events) {
                DetailFacts facts{.events = events, .files = files, .resourceFolder = ""};
                facts.sensorFound = facts.trusted = yes;
                facts.tapActive = yes && active;
                texts.insert(triggerDesc(event, facts));
            }
        }
        GaugeState gauge;
        gauge.sensorAvailable = yes;
        texts.insert(gaugeDescription(gauge));
        for (const GaugeShape& shape :
             gaugeShapes({}, gauge, [](auto&&...) { return GaugeSize(); })) {
            if (const auto* const text = std::get_if<GaugeText>(&shape)) {
                texts.insert(text->text);
            }
        }
    }
    return texts;
}

TEST(ThePlatformWording, SaysNothingOfAnotherPlatform) {
    for (const std::string& given : givenTexts()) {
        const std::string shown = platformWording(given);
        EXPECT_EQ(foreignWordIn(shown), "") << shown;
        EXPECT_EQ(shown.find('{'), std::string::npos) << shown;
    }
}

TEST(ThePlatformWording, StandsInForTextsThatTheRulesStillHave) {
    const std::set<std::string> given = givenTexts();
    for (const PlatformWording& row : platformWordings()) {
        SCOPED_TRACE(row.given);
        const std::size_t hole = row.given.find(kPlaceholder);
        EXPECT_EQ(hole == std::string_view::npos,
                  row.shown.find(kPlaceholder) == std::string_view::npos);
        if (hole == std::string_view::npos) {
            EXPECT_TRUE(given.contains(std::string(row.given)));
            continue;
        }
        EXPECT_TRUE(std::ranges::any_of(given, [&](const std::string& text) {
            return text.starts_with(row.given.substr(0, hole)) &&
                   text.ends_with(row.given.substr(hole + kPlaceholder.size()));
        }));
    }
}

TEST(ThePlatformWording, PutsInNumbersAndTheFactsOfTheBuild) {
    EXPECT_EQ(platformWording("  7.  Quit and relaunch Chimewerk"),
              "  7.  If you have joined a group, log out and in again");
    EXPECT_THAT(platformWording(kHelpVersionLine),
                testing::MatchesRegex("v[0-9.]+  ·  19 Events  ·  6 Themes  ·  [a-z0-9_]+"));
    EXPECT_EQ(platformWording("Focus"), "Focus");
}

}  // namespace
}  // namespace chimewerk
