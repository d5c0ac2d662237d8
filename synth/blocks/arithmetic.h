// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace chimewerk::synth {

/// Sample rate of all sounds, in hertz.
inline constexpr double kSampleRate = 48000.0;

/// Returns the sine of an angle in turns: sine(0.25) is 1. The C library's sine and exponential
/// differ in the last bit between versions and processors; these do not, so the files are the
/// same everywhere.
double sine(double turns);
double cosine(double turns);

/// Returns two to the power of `exponent`, with a relative error below 1e-12.
double powerOfTwo(double exponent);

/// Returns the amplitude factor for `level` decibels.
double decibels(double level);

/// Returns the frequency ratio of `count` equal-tempered semitones.
double semitones(double count);

}  // namespace chimewerk::synth
