// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/wav_writer.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace chimewerk::synth {
namespace {

// Little-endian, as WAV requires on every machine.
void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>((value >> (8 * i)) & 0xFFU);
    }
}

std::string encoded(const std::vector<std::int16_t>& samples) {
    constexpr std::uint32_t kRate = 48000;
    const auto dataSize = static_cast<std::uint32_t>(2 * samples.size());
    std::string bytes = "RIFF";
    append(bytes, 36 + dataSize, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);
    append(bytes, 1, 2);  // integer samples
    append(bytes, 1, 2);  // one channel
    append(bytes, kRate, 4);
    append(bytes, 2 * kRate, 4);
    append(bytes, 2, 2);  // bytes per frame
    append(bytes, 16, 2);
    bytes += "data";
    append(bytes, dataSize, 4);
    for (const std::int16_t sample : samples) {
        append(bytes, static_cast<std::uint16_t>(sample), 2);
    }
    return bytes;
}

}  // namespace

void writeWav(const std::filesystem::path& path, const std::vector<std::int16_t>& samples) {
    const std::filesystem::path unfinished = path.string() + ".part";
    const std::string bytes = encoded(samples);
    std::ofstream file(unfinished, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    std::error_code error;
    if (!file) {
        const std::string reason = std::strerror(errno);
        std::filesystem::remove(unfinished, error);
        throw std::runtime_error("cannot write " + path.string() + ": " + reason);
    }
    std::filesystem::rename(unfinished, path, error);
    if (error) {
        std::error_code ignored;
        std::filesystem::remove(unfinished, ignored);
        throw std::runtime_error("cannot write " + path.string() + ": " + error.message());
    }
}

}  // namespace chimewerk::synth
