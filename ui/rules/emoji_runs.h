#pragma once

#include <string_view>
#include <vector>

namespace chimewerk {

/// A stretch of a text that is all emoji or has none.
struct EmojiRun {
    std::u16string_view text;
    bool isEmoji = false;
};

/// Cuts the text into stretches to be set in the emoji font and in that of the text. A text font has black
/// and white pictures of its own for some of the signs, and would be taken for these: so a sign that is
/// followed by the variation selector for emoji (U+FE0F), and a pictograph beyond the Basic Multilingual
/// Plane, count as emoji. The runs view the text and together are the whole of it; neighbours differ in kind.
std::vector<EmojiRun> emojiRuns(std::u16string_view text);

}  // namespace chimewerk
