// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>
#include <vector>

namespace chimewerk {

/// A part of a text that is all emoji or has none.
struct EmojiRun {
    std::u16string_view text;
    bool isEmoji = false;
};

/// Divides the text into runs for the emoji font and the text's own font. Text fonts have
/// black-and-white glyphs for some emoji and would be used otherwise. A character is emoji if
/// Unicode shows it as emoji by default or the emoji selector (U+FE0F) follows it, but not if the
/// text selector (U+FE0E) follows it. Selectors, joiners and keycaps belong to the emoji before
/// them. The runs are views of the text and cover all of it; neighbouring runs differ in kind.
std::vector<EmojiRun> emojiRuns(std::u16string_view text);

}  // namespace chimewerk
