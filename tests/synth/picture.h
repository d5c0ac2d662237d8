#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "synth/wav_file.h"

namespace chimewerk::sounds {

/// A picture of 16 colours, from 0 (background) over 15 (brightest).
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    Picture(int columns, int rows);
    std::uint8_t& at(int column, int row) {
        return pixels[static_cast<std::size_t>(row * width + column)];
    }
    std::uint8_t at(int column, int row) const {
        return pixels[static_cast<std::size_t>(row * width + column)];
    }
};

struct Tile {
    std::string label;
    Samples samples;
    /// How much time the tile is wide.
    double seconds = 1.2;
};

/// At least one tile, in rows of equal length, seven at most: each with its label, its waveform at full
/// height and below it its spectrogram, 60 Hz to 16 kHz from bottom to top on a logarithmic scale, 50 dB from
/// dark to bright.
Picture grid(const std::vector<Tile>& tiles);

/// Throws std::runtime_error when the file cannot be written.
void writePng(const std::filesystem::path& path, const Picture& picture);

}  // namespace chimewerk::sounds
