// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/texts/emoji_runs.h"

#include <gtest/gtest.h>

#include <string>

namespace chimewerk {
namespace {

/// Returns the text with brackets around its emoji.
std::u16string marked(std::u16string_view text) {
    std::u16string result;
    for (const EmojiRun& run : emojiRuns(text)) {
        EXPECT_FALSE(run.text.empty());
        result += run.isEmoji ? u"[" + std::u16string(run.text) + u"]" : std::u16string(run.text);
    }
    return result;
}

TEST(TheEmojiRuns, SeparateEmojiFromText) {
    struct Case {
        std::u16string text;
        std::u16string marked;
    };
    for (const auto& [text, expected] : std::initializer_list<Case>{
             {u"", u""},
             {u"plain — 3 ≥ 2", u"plain — 3 ≥ 2"},
             {u"a 🔊 b", u"a [🔊] b"},
             {u"🔊🔇🪫", u"[🔊🔇🪫]"},
             // Without a selector these are text.
             {u"⚠ ✏ ⌘ ✓ ▸ ▶", u"⚠ ✏ ⌘ ✓ ▸ ▶"},
             {u"⚠\uFE0F x⌨\uFE0F", u"[⚠\uFE0F] x[⌨\uFE0F]"},
             {u"🔊\uFE0E ⌚\uFE0E ⌚", u"🔊\uFE0E ⌚\uFE0E [⌚]"},
             // An emoji of several characters stays in one run.
             {u"x1\uFE0F\u20E3y", u"x[1\uFE0F\u20E3]y"},
             {u"👨\u200D👩\u200D👧!", u"[👨\u200D👩\u200D👧]!"},
             {u"a\u200Db", u"a\u200Db"},
             // Letters and mathematical symbols beyond the Basic Multilingual Plane are text.
             {u"𝐀 𠀀", u"𝐀 𠀀"}}) {
        EXPECT_EQ(marked(text), expected);
    }
}

TEST(TheEmojiRuns, LoseNothingOfDamagedText) {
    const std::u16string half(1, char16_t{0xD83D});
    for (const std::u16string& text :
         {half, half + half, u"a" + half, half + u"a", std::u16string(u"\uFE0F")}) {
        EXPECT_EQ(marked(text), text);
    }
    EXPECT_EQ(marked(half + u"\uFE0F"), u"[" + half + u"\uFE0F]");
}

}  // namespace
}  // namespace chimewerk
