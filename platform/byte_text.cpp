// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/byte_text.h"

#include <cstddef>
#include <optional>

namespace chimewerk {

namespace {

constexpr char kMark = '\0';

unsigned byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}
bool continues(unsigned byte) {
    return (byte & 0xC0U) == 0x80U;
}

/// Returns the length in bytes of the UTF-8 sequence at `at`; 0 if the sequence is invalid:
/// truncated, overlong, a surrogate or out of range.
std::size_t sequenceLength(std::string_view bytes, std::size_t at) {
    const unsigned lead = byteAt(bytes, at);
    if (lead < 0x80) {
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() - at < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!continues(byteAt(bytes, at + i))) {
            return 0;
        }
    }
    const unsigned second = byteAt(bytes, at + 1);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool noCharacter = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
    return overlong || noCharacter ? 0 : length;
}

bool isUtf8(std::string_view bytes) {
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t length = sequenceLength(bytes, at);
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

/// Converts UTF-8 text to bytes, one for each character; none if a character is above U+00FF.
std::optional<std::string> narrowed(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned byte = byteAt(text, at);
        if (byte >= 0x80) {
            if ((byte != 0xC2 && byte != 0xC3) || at + 1 == text.size()) {
                return std::nullopt;
            }
            ++at;
            byte = ((byte & 0x03U) << 6U) | (byteAt(text, at) & 0x3FU);
        }
        bytes.push_back(static_cast<char>(byte));
    }
    return bytes;
}

}  // namespace

std::string textFromBytes(std::string bytes) {
    // Bytes that begin with the mark are encoded too. Otherwise they would be decoded when they
    // are read.
    if (!bytes.starts_with(kMark) && isUtf8(bytes)) {
        return bytes;
    }
    std::string text(1, kMark);
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const unsigned byte = byteAt(bytes, at);
        if (byte < 0x80) {
            text.push_back(static_cast<char>(byte));
        } else {
            text.push_back(static_cast<char>(0xC0U | (byte >> 6U)));
            text.push_back(static_cast<char>(0x80U | (byte & 0x3FU)));
        }
    }
    return text;
}

std::string bytesFromText(std::string text) {
    if (!text.starts_with(kMark)) {
        return text;
    }
    auto bytes = narrowed(std::string_view(text).substr(1));
    return bytes ? std::move(*bytes) : text;
}

}  // namespace chimewerk
