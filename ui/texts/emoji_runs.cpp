// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/texts/emoji_runs.h"

#include <algorithm>
#include <array>

namespace chimewerk {

namespace {

constexpr char32_t kEmojiSelector = 0xFE0F;
constexpr char32_t kTextSelector = 0xFE0E;
constexpr char32_t kJoiner = 0x200D;
constexpr char32_t kKeycap = 0x20E3;

struct Range {
    char32_t first;
    char32_t last;
};

/// The characters that are emoji by default.
constexpr std::array kEmoji = {
    Range{0x231A, 0x231B},   Range{0x23E9, 0x23EC},   Range{0x23F0, 0x23F0},
    Range{0x23F3, 0x23F3},   Range{0x25FD, 0x25FE},   Range{0x2614, 0x2615},
    Range{0x2648, 0x2653},   Range{0x267F, 0x267F},   Range{0x2693, 0x2693},
    Range{0x26A1, 0x26A1},   Range{0x26AA, 0x26AB},   Range{0x26BD, 0x26BE},
    Range{0x26C4, 0x26C5},   Range{0x26CE, 0x26CE},   Range{0x26D4, 0x26D4},
    Range{0x26EA, 0x26EA},   Range{0x26F2, 0x26F3},   Range{0x26F5, 0x26F5},
    Range{0x26FA, 0x26FA},   Range{0x26FD, 0x26FD},   Range{0x2705, 0x2705},
    Range{0x270A, 0x270B},   Range{0x2728, 0x2728},   Range{0x274C, 0x274C},
    Range{0x274E, 0x274E},   Range{0x2753, 0x2755},   Range{0x2757, 0x2757},
    Range{0x2795, 0x2797},   Range{0x27B0, 0x27B0},   Range{0x27BF, 0x27BF},
    Range{0x2B1B, 0x2B1C},   Range{0x2B50, 0x2B50},   Range{0x2B55, 0x2B55},
    Range{0x1F004, 0x1F004}, Range{0x1F0CF, 0x1F0CF}, Range{0x1F18E, 0x1F18E},
    Range{0x1F191, 0x1F19A}, Range{0x1F1E6, 0x1F1FF}, Range{0x1F201, 0x1F201},
    Range{0x1F300, 0x1FAFF}};

/// A character and its length in UTF-16 units.
struct Character {
    char32_t code = 0;
    std::size_t length = 0;
};

/// Returns the first character of the text; an unpaired surrogate counts as one. Zero for an
/// empty text.
Character firstOf(std::u16string_view text) {
    if (text.empty()) {
        return {};
    }
    const char32_t high = text[0];
    const char32_t low = text.size() > 1 ? text[1] : 0;
    const bool isPair = high >= 0xD800 && high < 0xDC00 && low >= 0xDC00 && low < 0xE000;
    return isPair ? Character{0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00), 2}
                  : Character{high, 1};
}

bool isEmoji(char32_t code, char32_t next) {
    if (next == kEmojiSelector || next == kTextSelector) {
        return next == kEmojiSelector;
    }
    return std::ranges::any_of(
        kEmoji, [code](const Range& range) { return range.first <= code && code <= range.last; });
}

bool continuesEmoji(char32_t code) {
    return code == kEmojiSelector || code == kJoiner || code == kKeycap;
}

}  // namespace

std::vector<EmojiRun> emojiRuns(std::u16string_view text) {
    std::vector<EmojiRun> runs;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Character character = firstOf(text.substr(at));
        const bool afterEmoji = !runs.empty() && runs.back().isEmoji;
        const bool emoji =
            (afterEmoji && continuesEmoji(character.code)) ||
            isEmoji(character.code, firstOf(text.substr(at + character.length)).code);
        if (runs.empty() || emoji != afterEmoji) {
            runs.push_back({{}, emoji});
            begin = at;
        }
        at += character.length;
        runs.back().text = text.substr(begin, at - begin);
    }
    return runs;
}

}  // namespace chimewerk
