// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/byte_text.h"

#include <gtest/gtest.h>

#include <random>

namespace chimewerk {
namespace {

using namespace std::string_literals;

TEST(ByteText, ReturnsUtf8UnchangedAndMarksEverythingElse) {
    for (const auto& text :
         {""s, "/home/jürgen/🔔.wav"s, "a\0b"s, "\x7F\xF4\x8F\xBF\xBF\xED\x9F\xBF"s}) {
        EXPECT_EQ(textFromBytes(text), text);
    }
    EXPECT_EQ(textFromBytes("/j\xFCrgen"), "\0/jürgen"s);
    EXPECT_EQ(textFromBytes("\0"s), "\0\0"s);
    // Truncated, overlong, a surrogate, above the last character, a lone continuation byte.
    for (const auto& bytes :
         {"\xC3"s, "\xF0\x9F\x94"s, "\xC0\xAF"s, "\xE0\x9F\x80"s, "\xF0\x8F\x80\x80"s,
          "\xED\xA0\x80"s, "\xF4\x90\x80\x80"s, "\xF5\x80\x80\x80"s, "\x80"s, "\xC3("s}) {
        EXPECT_TRUE(textFromBytes(bytes).starts_with('\0')) << bytes;
    }
}

TEST(ByteText, RoundTripsAnyBytes) {
    std::mt19937 random(1);
    const std::string alphabet = "\0a\x80\xBF\xC2\xC3\xE0\xA0\xED\xF0\x90\xF4\x8F\xFF"s;
    for (int i = 0; i < 20000; ++i) {
        std::string bytes;
        for (auto length = random() % 6; length > 0; --length) {
            bytes += alphabet[random() % alphabet.size()];
        }
        const std::string text = textFromBytes(bytes);
        ASSERT_EQ(bytesFromText(text), bytes) << i;
        // The encoded text is UTF-8 itself; after a character it is returned unchanged.
        ASSERT_EQ(textFromBytes("a" + text), "a" + text) << i;
    }
}

TEST(ByteText, KeepsForeignTextThatOnlyLooksMarked) {
    for (const auto& text : {"\0€"s, "\0🔔"s, "\0a\xC4\x80"s}) {
        EXPECT_EQ(bytesFromText(text), text);
    }
}

}  // namespace
}  // namespace chimewerk
