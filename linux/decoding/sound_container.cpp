// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/sound_container.h"

#include <array>
#include <cstring>
#include <string_view>

namespace chimewerk {

namespace {

enum class ByteOrder { little, big };

std::uint32_t load32(std::span<const std::byte> bytes, std::size_t at, ByteOrder order) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t from = order == ByteOrder::big ? at + i : at + 3 - i;
        value = value << 8U | std::to_integer<std::uint32_t>(bytes[from]);
    }
    return value;
}

std::uint64_t load64(std::span<const std::byte> bytes, std::size_t at) {
    return std::uint64_t{load32(bytes, at, ByteOrder::big)} << 32U |
           load32(bytes, at + 4, ByteOrder::big);
}

bool hasTag(std::span<const std::byte> bytes, std::size_t at, std::string_view tag) {
    return at + tag.size() <= bytes.size() &&
           std::memcmp(bytes.data() + at, tag.data(), tag.size()) == 0;
}

/// At most this many chunks are inspected before the sound.
constexpr int kMostChunks = 64;

/// Finds the chunk with the samples in a RIFF or IFF file and returns whether it reaches past the
/// file's end. Programs that write to a pipe leave a length of zero, or one close to the largest
/// possible: such a file is complete.
bool chunksAreTruncated(const ReadAt& readAt, std::uint64_t size, std::string_view samples,
                        ByteOrder order) {
    constexpr std::uint32_t kUnknownLength = 0x7FF00000;
    std::uint64_t at = 12;
    for (int i = 0; i < kMostChunks; ++i) {
        std::array<std::byte, 8> header{};
        if (readAt(at, header) < header.size()) {
            return true;
        }
        const std::uint32_t length = load32(header, 4, order);
        at += header.size();
        if (hasTag(header, 0, samples)) {
            return length < kUnknownLength && at + length > size;
        }
        at += std::uint64_t{length} + length % 2;
    }
    return false;
}

/// Returns whether a box of an M4A file reaches past the file's end.
bool boxesAreTruncated(const ReadAt& readAt, std::uint64_t size) {
    std::uint64_t at = 0;
    for (int i = 0; i < kMostChunks && at < size; ++i) {
        std::array<std::byte, 16> header{};
        const std::size_t got = readAt(at, header);
        if (got < 8) {
            return true;
        }
        std::uint64_t length = load32(header, 0, ByteOrder::big);
        if (length == 0) {
            return false;  // The box ends where the file ends.
        }
        if (length == 1) {
            length = got < 16 ? 0 : load64(header, 8);
        }
        if (length < 8 || length > size - at) {
            return true;
        }
        at += length;
    }
    return false;
}

/// Returns the length of the ID3 tag at the file's start; 0 if there is none.
std::uint64_t tagLength(std::span<const std::byte> head) {
    constexpr std::size_t kHeader = 10;
    if (head.size() < kHeader || !hasTag(head, 0, "ID3")) {
        return 0;
    }
    std::uint64_t length = 0;
    for (std::size_t i = 6; i < kHeader; ++i) {
        length = length << 7U | (std::to_integer<std::uint64_t>(head[i]) & 0x7FU);
    }
    const bool hasFooter = (std::to_integer<unsigned>(head[5]) & 0x10U) != 0;
    return kHeader + length + (hasFooter ? kHeader : 0);
}

/// Reads the first frame of an MP3, which may be a table of contents of the file.
void inspectMp3(const ReadAt& readAt, std::uint64_t size, SoundContainer& facts) {
    std::array<std::byte, 256> frame{};
    if (readAt(facts.audioStart, frame) < frame.size()) {
        return;
    }
    const std::uint32_t header = load32(frame, 0, ByteOrder::big);
    const std::uint32_t version = header >> 19U & 3U;  // 3: MPEG 1, 2: MPEG 2, 0: MPEG 2.5
    const std::uint32_t layer = header >> 17U & 3U;    // 1: layer III
    const std::uint32_t rateIndex = header >> 10U & 3U;
    const bool mono = (header >> 6U & 3U) == 3U;
    if (header >> 21U != 0x7FFU || version == 1 || layer != 1 || rateIndex == 3) {
        return;
    }
    const bool mpeg1 = version == 3;
    const std::size_t at = 4 + (mpeg1 ? (mono ? 17U : 32U) : (mono ? 9U : 17U));
    facts.isMp3 = true;
    if (!hasTag(frame, at, "Xing") && !hasTag(frame, at, "Info")) {
        return;
    }
    constexpr std::array<double, 3> kRates = {44100, 48000, 32000};
    const double rate = kRates.at(rateIndex) / (mpeg1 ? 1 : version == 2 ? 2 : 4);
    const double samplesPerFrame = mpeg1 ? 1152 : 576;
    const std::uint32_t present = load32(frame, at + 4, ByteOrder::big);
    std::size_t field = at + 8;
    if ((present & 1U) != 0) {
        facts.seconds = load32(frame, field, ByteOrder::big) * samplesPerFrame / rate;
        field += 4;
    }
    if ((present & 2U) != 0) {
        facts.sizeFieldAt = facts.audioStart + field;
        facts.truncated = facts.audioStart + load32(frame, field, ByteOrder::big) > size;
    }
}

}  // namespace

SoundContainer inspectSoundContainer(const ReadAt& readAt, std::uint64_t size) {
    std::array<std::byte, 16> head{};
    const std::span<const std::byte> got(head.data(), readAt(0, head));
    SoundContainer facts;
    if (hasTag(got, 0, "RIFF") && hasTag(got, 8, "WAVE")) {
        facts.truncated = chunksAreTruncated(readAt, size, "data", ByteOrder::little);
    } else if (hasTag(got, 0, "FORM") && (hasTag(got, 8, "AIFF") || hasTag(got, 8, "AIFC"))) {
        facts.truncated = chunksAreTruncated(readAt, size, "SSND", ByteOrder::big);
    } else if (hasTag(got, 4, "ftyp")) {
        facts.truncated = boxesAreTruncated(readAt, size);
    } else {
        facts.audioStart = tagLength(got);
        inspectMp3(readAt, size, facts);
    }
    return facts;
}

}  // namespace chimewerk
