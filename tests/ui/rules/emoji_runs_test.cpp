#include "ui/rules/emoji_runs.h"

#include <gtest/gtest.h>

#include <string>

namespace chimewerk {
namespace {

/// The text with brackets around its emoji.
std::u16string marked(std::u16string_view text) {
    std::u16string result;
    for (const EmojiRun& run : emojiRuns(text)) {
        result += run.isEmoji ? u"[" + std::u16string(run.text) + u"]" : std::u16string(run.text);
    }
    return result;
}

TEST(TheEmojiRuns, TellPicturesFromText) {
    struct Case {
        std::u16string text;
        std::u16string marked;
    };
    for (const auto& [text, expected] : std::initializer_list<Case>{
             {u"", u""},
             {u"plain — 3 ≥ 2", u"plain — 3 ≥ 2"},
             {u"a 🔊 b", u"a [🔊] b"},
             {u"🔊🔇", u"[🔊🔇]"},
             {u"🪫", u"[🪫]"},
             // By themselves these are signs of the text's font; the selector makes them pictures.
             {u"⚠ ✏ ⌘ ✓ ▸", u"⚠ ✏ ⌘ ✓ ▸"},
             {u"⚠\uFE0F x", u"[⚠\uFE0F] x"},
             {u"x⌨\uFE0F", u"x[⌨\uFE0F]"},
             {u"🖥\uFE0Fx", u"[🖥\uFE0F]x"},
             // Letters and mathematics beyond the Basic Multilingual Plane are text.
             {u"𝐀 𠀀", u"𝐀 𠀀"},
             {u"\U0001F000\U0001FBFF", u"[\U0001F000\U0001FBFF]"}}) {
        EXPECT_EQ(marked(text), expected);
    }
}

TEST(TheEmojiRuns, LoseNothingOfDamagedText) {
    const char16_t half = 0xD83D;
    for (const std::u16string& text :
         {std::u16string(1, half), std::u16string(2, half), std::u16string(u"a") + half,
          std::u16string(u"\uFE0F"), std::u16string(1, half) + u"\uFE0F",
          std::u16string(1, char16_t{0xDD0A}) + u"a"}) {
        std::u16string joined;
        for (const EmojiRun& run : emojiRuns(text)) {
            EXPECT_FALSE(run.text.empty());
            joined += run.text;
        }
        EXPECT_EQ(joined, text);
    }
}

}  // namespace
}  // namespace chimewerk
