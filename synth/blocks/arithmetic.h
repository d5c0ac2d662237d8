#pragma once

namespace chimewerk::synth {

/// Samples per second of everything here.
inline constexpr double kSampleRate = 48000.0;

/// The sine of an angle given in turns: sine(0.25) is 1. The C library's sine and exponential differ in the
/// last bit from version to version and from processor to processor; these two do not, and so neither do the
/// files.
double sine(double turns);
double cosine(double turns);

/// Two to the power of `exponent`, within 1e-12 of the true value relative to it.
double powerOfTwo(double exponent);

/// The factor of an amplitude that is `level` decibels above another.
double decibels(double level);

/// The ratio of two frequencies that lie `count` equal-tempered semitones apart.
double semitones(double count);

}  // namespace chimewerk::synth
