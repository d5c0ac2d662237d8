#include "synth/picture.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

#include "synth/spectrum.h"

namespace chimewerk::sounds {
namespace {

constexpr int kMostColumns = 7;
constexpr int kTileWidth = 150;
constexpr int kLabelHeight = 14;
constexpr int kWaveHeight = 32;
constexpr int kSpectrumHeight = 120;
constexpr int kTileHeight = kLabelHeight + kWaveHeight + kSpectrumHeight + 10;
constexpr int kInnerWidth = kTileWidth - 6;
constexpr std::uint8_t kInk = 15;
constexpr std::uint8_t kWave = 10;

// Capitals of three by five dots, the top row in the highest three bits.
constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr int kGlyphs[] = {025755, 065656, 034443, 065556, 074647, 074644, 034553, 055755, 072227,
                           011152, 055655, 044447, 057755, 065555, 025552, 065644, 025573, 065655,
                           034216, 072222, 055557, 055552, 055775, 055255, 055222, 071247};

void drawText(Picture& picture, int left, int top, std::string_view text) {
    constexpr int kDot = 2;
    for (const char character : text) {
        const std::size_t letter =
            kLetters.find(static_cast<char>(std::toupper(static_cast<unsigned char>(character))));
        const int glyph = letter == std::string_view::npos ? 0 : kGlyphs[letter];
        for (int pixel = 0; pixel < 15 * kDot * kDot; ++pixel) {
            const int x = pixel % (3 * kDot);
            const int y = pixel / (3 * kDot);
            if ((glyph >> (14 - 3 * (y / kDot) - x / kDot) & 1) != 0) {
                picture.at(left + x, top + y) = kInk;
            }
        }
        left += 4 * kDot;
    }
}

void drawWave(Picture& picture, int left, int top, const Tile& tile) {
    const Samples& samples = tile.samples;
    const auto perColumn = static_cast<std::size_t>(tile.seconds * kSampleRate / kInnerWidth);
    const auto [lowest, highest] = std::minmax_element(samples.begin(), samples.end());
    const double peak = std::max({-*lowest, *highest, 1e-6});
    const auto rowOf = [=](double sample) {
        return static_cast<int>(std::lround((0.5 - 0.5 * sample / peak) * (kWaveHeight - 1)));
    };
    for (int column = 0; column < kInnerWidth; ++column) {
        const std::size_t from = static_cast<std::size_t>(column) * perColumn;
        if (from >= samples.size()) {
            return;
        }
        const auto first = samples.begin() + static_cast<std::ptrdiff_t>(from);
        const auto last = samples.begin() +
                          static_cast<std::ptrdiff_t>(std::min(from + perColumn, samples.size()));
        const auto [low, high] = std::minmax_element(first, last);
        for (int row = rowOf(*high); row <= rowOf(*low); ++row) {
            picture.at(left + column, top + row) = kWave;
        }
    }
}

// The loudest bin between the two frequencies of a row, so that no partial falls between the rows.
double powerBetween(const Spectrum& spectrum, double fromHertz, double toHertz) {
    const auto first = static_cast<std::size_t>(fromHertz / kHertzPerBin);
    const auto last = std::max(first, static_cast<std::size_t>(toHertz / kHertzPerBin));
    return *std::max_element(spectrum.begin() + static_cast<std::ptrdiff_t>(first),
                             spectrum.begin() + static_cast<std::ptrdiff_t>(last) + 1);
}

void drawSpectrogram(Picture& picture, int left, int top, const Tile& tile) {
    constexpr double kLowest = 60.0;
    constexpr double kHighest = 16000.0;
    constexpr double kRange = 50.0;
    // The shorter the time that is shown, the shorter what one column sees.
    const auto columns = spectra(tile.samples, tile.seconds / kInnerWidth, 0.035 * tile.seconds);
    double loudest = 1e-12;
    for (const Spectrum& spectrum : columns) {
        loudest = std::max(loudest, *std::max_element(spectrum.begin(), spectrum.end()));
    }
    const int width = std::min(kInnerWidth, static_cast<int>(columns.size()));
    for (int row = 0; row < kSpectrumHeight; ++row) {
        const auto frequency = [](int line) {
            return kLowest *
                   std::pow(kHighest / kLowest, static_cast<double>(line) / kSpectrumHeight);
        };
        for (int column = 0; column < width; ++column) {
            const double power = powerBetween(columns[static_cast<std::size_t>(column)],
                                              frequency(row), frequency(row + 1));
            const double level = 1.0 + 10.0 * std::log10(std::max(power, 1e-12) / loudest) / kRange;
            picture.at(left + column, top + kSpectrumHeight - 1 - row) =
                static_cast<std::uint8_t>(std::lround(14.0 * std::clamp(level, 0.0, 1.0)) + 1);
        }
    }
}

}  // namespace

Picture::Picture(int columns, int rows)
    : width(columns),
      height(rows),
      pixels(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), 0) {}

Picture grid(const std::vector<Tile>& tiles) {
    const int count = static_cast<int>(tiles.size());
    const int rows = (count + kMostColumns - 1) / kMostColumns;
    const int columns = (count + rows - 1) / rows;
    Picture picture(columns * kTileWidth, rows * kTileHeight);
    for (int i = 0; i < count; ++i) {
        const Tile& tile = tiles[static_cast<std::size_t>(i)];
        const int left = i % columns * kTileWidth + 3;
        const int top = i / columns * kTileHeight + 3;
        drawText(picture, left, top, tile.label);
        drawWave(picture, left, top + kLabelHeight, tile);
        drawSpectrogram(picture, left, top + kLabelHeight + kWaveHeight + 2, tile);
    }
    return picture;
}

}  // namespace chimewerk::sounds
