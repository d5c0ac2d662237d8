#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace chimewerk::sounds {

/// Samples per second that every file of ours has.
inline constexpr double kSampleRate = 48000.0;

/// Mono samples, full scale ±1.
using Samples = std::vector<double>;

/// Reads a file strictly: 16-bit mono PCM at 48 kHz, its sizes true to the byte. Throws std::runtime_error
/// that names the file and what is wrong with it.
Samples readWav(const std::filesystem::path& path);

/// The same for the bytes of a file.
Samples decodeWav(const std::vector<std::uint8_t>& bytes);

}  // namespace chimewerk::sounds
