#pragma once

#include "synth/wav_file.h"

namespace chimewerk::sounds {

/// What is measured of a sound in time. Levels are in decibels.
struct Levels {
    double seconds = 0.0;
    /// Of the largest sample, relative to full scale; -200 for silence.
    double peak = -200.0;
    /// Loudness of the loudest 400 ms, in LUFS; see loudness().
    double loudness = -200.0;
    /// Time until the first sample that is no more than 40 dB below the peak, in milliseconds.
    double onset = 0.0;
    /// Of the first and of the last sample, relative to full scale: a step that would be heard as a click.
    double firstStep = -200.0;
    double lastStep = -200.0;
    /// Of the last 4 ms relative to the loudest 4 ms: a sound that is not cut has died away.
    double ending = 0.0;
    /// Of the mean of all samples, relative to the peak.
    double offset = -200.0;
    /// The longest run of samples that all sit at the highest or at the lowest value: a clipped sound has
    /// plateaus.
    int plateau = 0;
};

Levels measureLevels(const Samples& samples);

/// The weighting of ITU-R BS.1770 over the loudest 400 ms, with silence around the file: the standard's
/// "momentary" loudness at its maximum. The gated loudness of a whole programme has no meaning for sounds
/// that are mostly shorter than one of its blocks. A mono file is heard from two loudspeakers, so its channel
/// counts twice.
double loudness(const Samples& samples);

}  // namespace chimewerk::sounds
