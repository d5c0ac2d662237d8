// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

#include "synth/blocks/curve.h"
#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// Random numbers that are the same on every machine and in every run.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    /// Returns a number evenly distributed from 0 to below 1.
    double fraction();
    /// Returns a number evenly distributed from -1 to below 1.
    double bipolar() { return 2.0 * fraction() - 1.0; }

private:
    std::uint64_t state_;
};

/// White noise; equal seeds give equal noise.
Sound noise(double seconds, std::uint64_t seed);

/// One bit of a 15-bit shift register, clocked at `hertz`: the noise channel of old game consoles.
/// The short loop repeats after 93 clocks and rings like metal.
enum class RegisterLoop { full, short93 };
Sound registerNoise(double seconds, const Curve& hertz, RegisterLoop loop);

/// Single impulses of different heights at random times, `perSecond` on average: many small and few
/// large ones, as of crumpled paper or cracking wood.
Sound crackle(double seconds, const Curve& perSecond, std::uint64_t seed);

/// Impulses at a rate of `hertz`, with distance and height varied by `unrest` (0 to 1), like a
/// surface that sticks and slips.
Sound stickSlip(double seconds, const Curve& hertz, double unrest, std::uint64_t seed);

}  // namespace chimewerk::synth
