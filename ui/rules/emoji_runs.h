// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>
#include <vector>

namespace chimewerk {

/// A stretch of a text that is all emoji or has none.
struct EmojiRun {
    std::u16string_view text;
    bool isEmoji = false;
};

/// Cuts the text into stretches to be set in the emoji font and in that of the text. Text fonts
/// have black-and-white glyphs for some emoji and would win otherwise. A character is emoji if
/// Unicode shows it as emoji by default or if the emoji selector (U+FE0F) follows it, and not if
/// the text selector (U+FE0E) does. Selectors, joiners and keycaps belong to the emoji before them.
/// The runs view the text and together are the whole of it; neighbours differ in kind.
std::vector<EmojiRun> emojiRuns(std::u16string_view text);

}  // namespace chimewerk
