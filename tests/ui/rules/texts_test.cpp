// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <limits>

#include "ui/rules/theme_dialog_texts.h"
#include "ui/rules/value_texts.h"

namespace chimewerk {
namespace {

TEST(TheCounterText, UsesTheSingularOnlyForOne) {
    EXPECT_EQ(counterText(0), "Not triggered yet");
    EXPECT_EQ(counterText(1), "Triggered: 1 time");
    EXPECT_EQ(counterText(-1), "Triggered: -1 times");
    EXPECT_EQ(counterText(5'000'000'000), "Triggered: 5000000000 times");
}

TEST(TheValueTexts, TruncateNumbersToWholeOnes) {
    for (const auto& [volume, text] : {std::pair{0.3F, "30%"},
                                       {0.555F, "55%"},
                                       {0.29F, "29%"},
                                       {0.569F, "56%"},
                                       {0.999F, "99%"},
                                       {1.0F, "100%"},
                                       {-0.009F, "0%"}}) {
        EXPECT_EQ(volumeText(volume), text) << volume;
    }
    EXPECT_EQ(degreesText(47.99F), "47°");
    EXPECT_EQ(degreesText(std::numeric_limits<float>::quiet_NaN()), "0°");
    EXPECT_EQ(percentText(std::numeric_limits<float>::infinity()), "1000000000%");
}

TEST(TheThemeName, LosesSpacesAndTabsButNoLineBreaksAtItsEnds) {
    for (const auto& [typed, name] : {std::pair{"  Focus  ", "Focus"},
                                      {"\t a \t b\t", "a \t b"},
                                      {"   ", ""},
                                      {"\u00A0\u1680\u2000\u200A\u202F\u205F\u3000名\u3000", "名"},
                                      {"\n Focus \n", "\n Focus \n"},
                                      {"\u200BFocus\u2028", "\u200BFocus\u2028"},
                                      {"à", "à"},
                                      {"\xA0", "\xA0"}}) {
        EXPECT_EQ(trimmedThemeName(typed), name);
    }
}

}  // namespace
}  // namespace chimewerk
