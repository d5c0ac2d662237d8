// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace chimewerk::synth {

/// Samples per second of every sound here.
inline constexpr double kSampleRate = 48000.0;

/// The sine of an angle in turns: sine(0.25) is 1. The C library's sine and exponential differ
/// in the last bit between versions and processors; these two do not, so the files are the
/// same everywhere.
double sine(double turns);
double cosine(double turns);

/// Two to the power of `exponent`, within 1e-12 of the true value relative to it.
double powerOfTwo(double exponent);

/// The factor of an amplitude that is `level` decibels above another.
double decibels(double level);

/// The ratio of two frequencies that are `count` equal-tempered semitones apart.
double semitones(double count);

}  // namespace chimewerk::synth
