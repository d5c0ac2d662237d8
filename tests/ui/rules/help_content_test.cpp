#include "ui/rules/help_content.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "sound/sound_event.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

std::vector<std::string> textsOf(HelpKind kind) {
    std::vector<std::string> texts;
    for (const HelpParagraph& paragraph : helpContent()) {
        if (paragraph.kind == kind) {
            texts.push_back(paragraph.text);
        }
    }
    return texts;
}

std::string wholeText() {
    std::string whole;
    for (const HelpParagraph& paragraph : helpContent()) {
        whole += paragraph.text + "\n";
    }
    return whole;
}

std::uint64_t fnv1a(const std::string& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    }
    return hash;
}

// Both figures were worked out from the list of texts by other means. A text that changes on purpose changes
// them.
TEST(TheGuide, HasNotChangedByAccident) {
    EXPECT_EQ(wholeText().size(), 9528U);
    EXPECT_EQ(fnv1a(wholeText()), 0xa3789d3d3e8235b2U);
}

TEST(TheGuide, ListsEveryEventInOrder) {
    const auto rows = textsOf(HelpKind::icon);
    const auto events = factoryEvents();
    ASSERT_EQ(rows.size(), events.size() + 6);
    for (std::size_t i = 0; i < events.size(); ++i) {
        EXPECT_THAT(rows[i], StartsWith("  " + events[i].emoji + "  " + events[i].label + "  —  "));
    }
}

TEST(TheGuide, SeparatesItsSectionsByDividers) {
    EXPECT_THAT(
        textsOf(HelpKind::h1),
        ElementsAre("🎵  What is Chimewerk?", "🎛️  Sound Events", "🎨  Sound Themes",
                    "🔧  Troubleshooting", "🔐  Required Permissions", "💡  Tips & Shortcuts",
                    "🛡️  Privacy & Data", "🖥️  Compatibility", "📋  Version History"));
    const auto content = helpContent();
    for (std::size_t i = 1; i < content.size(); ++i) {
        EXPECT_EQ(content[i].kind == HelpKind::h1, content[i - 1].kind == HelpKind::divider)
            << content[i].text;
    }
}

TEST(TheGuide, CountsTheStepsOfEachListAnew) {
    std::vector<int> lengths;
    int number = 0;
    for (const HelpParagraph& paragraph : helpContent()) {
        if (paragraph.kind == HelpKind::step) {
            EXPECT_THAT(paragraph.text, StartsWith("  " + std::to_string(++number) + ".  "));
        } else if (number > 0) {
            lengths.push_back(std::exchange(number, 0));
        }
    }
    EXPECT_THAT(lengths, ElementsAre(5, 3, 2, 4, 3));
}

TEST(TheGuide, ColoursOneHeadingUnlikeTheOthers) {
    for (const HelpParagraph& paragraph : helpContent()) {
        const bool isTrouble = paragraph.text == "🔧  Troubleshooting";
        EXPECT_EQ(paragraph.color, isTrouble ? HelpColor::orange : helpStyle(paragraph.kind).color)
            << paragraph.text;
    }
}

TEST(TheGuide, PutsTheSignOfItsKindBeforeAText) {
    EXPECT_EQ(
        textsOf(HelpKind::tip).at(0),
        "💡  All settings are saved automatically. Just enable what you want and forget about it.");
    EXPECT_EQ(textsOf(HelpKind::warn).at(0),
              "⚠️  Never skip step 2. A stale entry from an old binary can block the new one "
              "from getting "
              "permission, even if it looks enabled.");
    EXPECT_THAT(textsOf(HelpKind::permissionsSummary),
                ElementsAre("All other 17 events work with zero permissions.", ""));
    // 49 characters of three bytes.
    EXPECT_EQ(textsOf(HelpKind::divider).at(0).size(), 147U);
}

TEST(TheGuide, EndsWithTwoEmptyLines) {
    EXPECT_THAT(wholeText(), testing::EndsWith("v1.0  —  Initial release\n\n\n"));
    EXPECT_EQ(textsOf(HelpKind::blank).size(), 2U);
}

}  // namespace
}  // namespace chimewerk
