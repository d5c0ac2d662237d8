// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/decoder.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "linux/decoding/m4a_module.h"
#include "linux/decoding/mpg123_decoder.h"
#include "linux/decoding/sndfile_decoder.h"

namespace chimewerk {

namespace {

/// The first bytes of a file after its tags.
using Magic = std::array<std::byte, 12>;

bool has(const Magic& magic, std::size_t at, std::string_view text) {
    return at + text.size() <= magic.size() &&
           std::memcmp(magic.data() + at, text.data(), text.size()) == 0;
}

unsigned byteAt(const Magic& magic, std::size_t at) {
    return std::to_integer<unsigned>(magic.at(at));
}

bool isM4a(const Magic& magic) {
    return has(magic, 4, "ftyp");
}

bool isForSndfile(const Magic& magic) {
    const bool wav = has(magic, 0, "RIFF") && has(magic, 8, "WAVE");
    const bool aiff = has(magic, 0, "FORM") && (has(magic, 8, "AIFF") || has(magic, 8, "AIFC"));
    return wav || aiff || has(magic, 0, "fLaC") || has(magic, 0, "OggS");
}

/// Returns whether the file starts with a frame of MPEG audio, layer III.
bool isMp3(const Magic& magic) {
    const unsigned version = byteAt(magic, 1) >> 3U & 3U;  // 1 is invalid.
    const unsigned layer = byteAt(magic, 1) >> 1U & 3U;    // 1 is layer III.
    const unsigned bitRate = byteAt(magic, 2) >> 4U;
    const unsigned rate = byteAt(magic, 2) >> 2U & 3U;
    return byteAt(magic, 0) == 0xFF && byteAt(magic, 1) >> 5U == 7 && version != 1 && layer == 1 &&
           bitRate != 15 && rate != 3;
}

/// The formats in order: the first one that recognises the file opens it.
struct Format {
    bool (*recognises)(const Magic& magic);
    std::unique_ptr<Decoder> (*open)(M4aModule& m4a, ByteStream& file);
};

constexpr Format kFormats[] = {
    {isForSndfile, [](M4aModule&, ByteStream& file) { return openSndfileDecoder(file); }},
    {isM4a, [](M4aModule& m4a, ByteStream& file) { return m4a.open(file); }},
    {isMp3, [](M4aModule&, ByteStream& file) { return openMpg123Decoder(file); }},
};

Magic magicOf(ByteStream& file) {
    Magic magic{};
    file.read(magic);
    file.seek(0, SEEK_SET);
    return magic;
}

/// Returns the length of the ID3 tag that starts with these bytes, or 0.
std::int64_t tagLength(const Magic& magic) {
    constexpr std::int64_t kHeader = 10;
    if (!has(magic, 0, "ID3")) {
        return 0;
    }
    std::int64_t length = 0;
    for (std::size_t i = 6; i < 10; ++i) {
        length = length << 7U | (byteAt(magic, i) & 0x7FU);
    }
    const bool hasFooter = (byteAt(magic, 5) & 0x10U) != 0;
    return kHeader + length + (hasFooter ? kHeader : 0);
}

/// Skips the tags at the file's start, which may contain pictures, and returns the bytes
/// after them.
Magic magicBehindTags(ByteStream& file) {
    constexpr int kMostTags = 8;
    Magic magic = magicOf(file);
    for (int i = 0; i < kMostTags && tagLength(magic) > 0; ++i) {
        file.seek(tagLength(magic), SEEK_SET);
        file.startHere();
        magic = magicOf(file);
    }
    return magic;
}

}  // namespace

Decoders::Decoders(const std::string& moduleFolder)
    : m4a_(std::make_unique<M4aModule>(moduleFolder + "/chimewerk-m4a.so")) {}

Decoders::~Decoders() = default;

std::unique_ptr<Decoder> Decoders::open(ByteStream& file) const {
    const Magic magic = magicBehindTags(file);
    for (const Format& format : kFormats) {
        if (format.recognises(magic)) {
            return format.open(*m4a_, file);
        }
    }
    return nullptr;
}

}  // namespace chimewerk
