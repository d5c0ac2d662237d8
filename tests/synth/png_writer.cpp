#include <zlib.h>

#include <array>
#include <cmath>
#include <fstream>
#include <stdexcept>

#include "synth/picture.h"

namespace chimewerk::sounds {
namespace {

void append(std::string& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>((value >> shift) & 0xFFU);
    }
}

const Bytef* bytesOf(const std::string& text) {
    return reinterpret_cast<const Bytef*>(text.data());
}

std::string chunk(const std::string& type, const std::string& content) {
    std::string bytes;
    append(bytes, static_cast<std::uint32_t>(content.size()));
    const std::string checked = type + content;
    bytes += checked;
    append(bytes, static_cast<std::uint32_t>(
                      crc32(0, bytesOf(checked), static_cast<uInt>(checked.size()))));
    return bytes;
}

// From the colour of the page over blue and red to a light yellow: brightness grows evenly, also without
// colour.
std::string palette() {
    std::string colours;
    for (int i = 0; i < 16; ++i) {
        const double x = i / 15.0;
        const std::array<double, 3> rgb = {
            std::min(1.0, 1.5 * x * x + 0.2 * x + 0.06), 0.07 + 0.88 * x * x,
            0.13 + 0.75 * x * (1.0 - x) * (1.4 - x) + 0.55 * x * x * x * x};
        for (const double part : rgb) {
            colours += static_cast<char>(std::lround(255.0 * part));
        }
    }
    return colours;
}

// Two pixels to a byte, each row behind a zero that says that it is stored as it is.
std::string packedRows(const Picture& picture) {
    std::string rows;
    for (int row = 0; row < picture.height; ++row) {
        rows += '\0';
        for (int column = 0; column < picture.width; column += 2) {
            const int right = column + 1 < picture.width ? picture.at(column + 1, row) : 0;
            rows += static_cast<char>(picture.at(column, row) << 4 | right);
        }
    }
    return rows;
}

std::string compressed(const std::string& content) {
    uLongf size = compressBound(static_cast<uLong>(content.size()));
    std::string result(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(result.data()), &size, bytesOf(content),
                  static_cast<uLong>(content.size()), Z_BEST_COMPRESSION) != Z_OK) {
        throw std::runtime_error("cannot compress a picture");
    }
    result.resize(size);
    return result;
}

}  // namespace

void writePng(const std::filesystem::path& path, const Picture& picture) {
    std::string header;
    append(header, static_cast<std::uint32_t>(picture.width));
    append(header, static_cast<std::uint32_t>(picture.height));
    header += std::string("\4\3\0\0\0", 5);  // four bits, by palette, nothing special
    const std::string bytes = "\x89PNG\r\n\x1A\n" + chunk("IHDR", header) +
                              chunk("PLTE", palette()) +
                              chunk("IDAT", compressed(packedRows(picture))) + chunk("IEND", "");
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

}  // namespace chimewerk::sounds
