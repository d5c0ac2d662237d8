// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace chimewerk::synth {

/// A value that changes with time: a pitch in hertz, a level, a filter's corner. A plain number is
/// a constant curve.
class Curve {
public:
    Curve(double constant) : value_([constant](double) { return constant; }) {}
    explicit Curve(std::function<double(double)> value) : value_(std::move(value)) {}

    double operator()(double seconds) const { return value_(seconds); }

private:
    std::function<double(double)> value_;
};

Curve operator*(Curve left, Curve right);

/// Goes from one value to another in equal ratios per second, as the ear hears pitch, and stays
/// there. Both must be positive.
Curve glide(double from, double to, double seconds);

/// Goes from one value to another in equal steps per second, and stays there.
Curve ramp(double from, double to, double seconds);

/// Takes one value after another, each for `secondsEach`, and stays at the last one. With pitches,
/// this is an arpeggio.
Curve steps(std::vector<double> values, double secondsEach);

/// Swings around `centre` by `semitonesEachWay` semitones, `hertz` times a second.
Curve wobble(Curve centre, double hertz, double semitonesEachWay);

/// Swings between 1 and 1 - `depth`, `hertz` times a second, beginning at 1.
Curve tremolo(double hertz, double depth);

/// The level of a struck sound: rises within `attack` seconds, then falls by 60 dB in every
/// `t60` seconds.
Curve struck(double attack, double t60);

/// The level of a blown sound: rises within `attack`, is full until `release` seconds before the
/// end at `seconds`, then falls gently to 0.
Curve breathed(double attack, double seconds, double release);

}  // namespace chimewerk::synth
