#include "synth/wav_file.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace chimewerk::sounds {
namespace {

constexpr std::size_t kHeader = 44;

std::uint32_t number(const std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value |= static_cast<std::uint32_t>(bytes.at(at + i)) << (8 * i);
    }
    return value;
}

void demand(bool condition, const char* complaint) {
    if (!condition) {
        throw std::runtime_error(complaint);
    }
}

}  // namespace

Samples decodeWav(const std::vector<std::uint8_t>& bytes) {
    demand(bytes.size() > kHeader, "shorter than a header");
    const auto tag = [&](std::size_t at, std::string_view expected) {
        return std::string(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                           bytes.begin() + static_cast<std::ptrdiff_t>(at + 4)) == expected;
    };
    demand(tag(0, "RIFF") && tag(8, "WAVE") && tag(12, "fmt ") && tag(36, "data"),
           "not a plain WAV file");
    demand(number(bytes, 20, 2) == 1 && number(bytes, 34, 2) == 16, "not 16-bit PCM");
    demand(number(bytes, 22, 2) == 1 && number(bytes, 32, 2) == 2, "not mono");
    demand(number(bytes, 24, 4) == 48000 && number(bytes, 28, 4) == 96000, "not at 48 kHz");
    demand(
        number(bytes, 4, 4) == bytes.size() - 8 && number(bytes, 40, 4) == bytes.size() - kHeader,
        "its sizes are not those of the file");
    Samples samples;
    for (std::size_t at = kHeader; at + 1 < bytes.size(); at += 2) {
        const auto sample = static_cast<std::int16_t>(number(bytes, at, 2));
        samples.push_back(sample / 32768.0);
    }
    return samples;
}

Samples readWav(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file),
                                          std::istreambuf_iterator<char>()};
    try {
        return decodeWav(bytes);
    } catch (const std::exception& fault) {
        throw std::runtime_error(path.filename().string() + ": " + fault.what());
    }
}

}  // namespace chimewerk::sounds
