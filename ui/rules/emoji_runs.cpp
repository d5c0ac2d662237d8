#include "ui/rules/emoji_runs.h"

namespace chimewerk {

namespace {

constexpr char16_t emojiSelector = 0xFE0F;
// The surrogates that U+1F000 to U+1FBFF begin with.
constexpr char16_t firstPictographs = 0xD83C;
constexpr char16_t lastPictographs = 0xD83E;

struct Sign {
    std::size_t length;
    bool isEmoji;
};

/// The sign at the beginning of a text that is not empty, with its selector.
Sign firstSign(std::u16string_view text) {
    const char16_t first = text.front();
    const bool isPair = first >= 0xD800 && first < 0xDC00 && text.size() > 1;
    const std::size_t length = isPair ? 2 : 1;
    if (length < text.size() && text[length] == emojiSelector) {
        return {length + 1, true};
    }
    return {length, isPair && first >= firstPictographs && first <= lastPictographs};
}

}  // namespace

std::vector<EmojiRun> emojiRuns(std::u16string_view text) {
    std::vector<EmojiRun> runs;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Sign sign = firstSign(text.substr(at));
        if (runs.empty() || runs.back().isEmoji != sign.isEmoji) {
            runs.push_back({{}, sign.isEmoji});
            begin = at;
        }
        at += sign.length;
        runs.back().text = text.substr(begin, at - begin);
    }
    return runs;
}

}  // namespace chimewerk
