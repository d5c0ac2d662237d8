#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "synth/wav_file.h"

namespace chimewerk::sounds {

/// The power at 0, 23.4, 46.9 ... 24,000 Hz around a moment.
inline constexpr std::size_t kBins = 1025;
inline constexpr double kHertzPerBin = kSampleRate / 2048.0;
using Spectrum = std::array<double, kBins>;

/// One spectrum for every `hop` seconds, the first around the beginning of the sound. Each sees `window`
/// seconds, at most 42 ms: a longer window tells tones apart better, a shorter one moments.
std::vector<Spectrum> spectra(const Samples& samples, double hop, double window = 0.042);

/// How far a sound rises (positive) or falls (negative) from its first to its last third, in octaves of the
/// centre of its power spectrum. moments more than 20 dB below the loudest do not count, louder ones count
/// more. The power spectrum rather than the amplitude spectrum, because it follows the tones that are heard
/// as the pitch and not the many weak partials above them, which die first in nearly every sound.
double trend(const Samples& samples);

/// The share (0 to 1) of the sound's power that lies above a frequency.
double shareAbove(double hertz, const Samples& samples);

/// The least distance of two portraits whose sounds nobody takes for each other. A sound and its copy at
/// another volume, a little later or a quarter of a tone higher stay below kUnlike. Within a theme all sounds
/// have one timbre, and so their melodies must differ the more.
inline constexpr double kUnlike = 8.0;
inline constexpr double kUnlikeWithinATheme = 10.0;

/// What the ear can tell sounds apart by: the level in 23 bands of a third of an octave for every 20 ms, in
/// decibels above a floor 40 dB below the sound's loudest cell. It knows melody, rhythm and timbre, and no
/// volume.
class Portrait {
public:
    explicit Portrait(const Samples& samples);

    /// The root mean square difference of two portraits in decibels over all cells in which either is above
    /// its floor; 0 for a copy at any volume, about 25 for sounds with nothing in common.
    double distanceTo(const Portrait& other) const;

    /// How often something begins: the moments at which many bands become louder together.
    int strokes() const;

private:
    static constexpr std::size_t kBands = 23;
    std::vector<std::array<double, kBands>> frames_;
};

}  // namespace chimewerk::sounds
