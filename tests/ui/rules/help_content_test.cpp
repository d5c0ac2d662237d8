// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/help_content.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sound/sound_event.h"

namespace chimewerk {
namespace {

using testing::StartsWith;

std::uint64_t fnv1a(const std::string& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    }
    return hash;
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
    std::vector<std::string> rows;
    for (const HelpParagraph& paragraph : helpContent()) {
        if (paragraph.kind == HelpKind::icon) {
            rows.push_back(paragraph.text);
        }
    }
    const auto events = factoryEvents();
    ASSERT_GE(rows.size(), events.size());
    for (std::size_t i = 0; i < events.size(); ++i) {
        EXPECT_THAT(rows[i], StartsWith("  " + events[i].emoji + "  " + events[i].label + "  —  "));
    }
}

}  // namespace
}  // namespace chimewerk
