// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/help_content.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "sound/sound_event.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

std::uint64_t fnv1a(const std::string& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    }
    return hash;
}

std::vector<std::string> textsOf(HelpKind kind) {
    std::vector<std::string> texts;
    for (const HelpParagraph& paragraph : helpContent()) {
        if (paragraph.kind == kind) {
            texts.push_back(paragraph.text);
        }
    }
    return texts;
}

// The fingerprint of all paragraphs: their kinds, colours and words. If you have changed one on
// purpose, the failing test prints the guide and its new fingerprint.
TEST(TheGuide, HasNotChangedByAccident) {
    std::string whole;
    for (const HelpParagraph& paragraph : helpContent()) {
        whole += std::to_string(static_cast<int>(paragraph.kind)) + "," +
                 std::to_string(static_cast<int>(paragraph.color)) + "," + paragraph.text + "\n";
    }
    EXPECT_EQ(fnv1a(whole), 17836267229878568634U) << whole;
}

TEST(TheGuide, ListsEveryEventInOrder) {
    const auto rows = textsOf(HelpKind::icon);
    const auto events = factoryEvents();
    ASSERT_GE(rows.size(), events.size());
    for (std::size_t i = 0; i < events.size(); ++i) {
        EXPECT_THAT(rows[i], StartsWith("  " + events[i].emoji + "  " + events[i].label + "  —  "));
    }
}

TEST(TheGuide, SeparatesItsSectionsByDividers) {
    const auto content = helpContent();
    for (std::size_t i = 1; i < content.size(); ++i) {
        EXPECT_EQ(content[i].kind == HelpKind::h1, content[i - 1].kind == HelpKind::divider)
            << content[i].text;
    }
}

TEST(TheGuide, NumbersTheStepsOfEachListFromOne) {
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

}  // namespace
}  // namespace chimewerk
