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

/// From one value to another in equal ratios per second, as the ear hears pitch; stays there.
/// Both positive.
Curve glide(double from, double to, double seconds);

/// From one value to another in equal steps per second; stays there.
Curve ramp(double from, double to, double seconds);

/// One value after another, each for `secondsEach`; the last one stays. An arpeggio, when they
/// are pitches.
Curve steps(std::vector<double> values, double secondsEach);

/// Swings around `centre` by `semitonesEachWay`, `hertz` times a second.
Curve wobble(Curve centre, double hertz, double semitonesEachWay);

/// Between 0 and 1, `hertz` times a second, beginning at 1.
Curve tremolo(double hertz, double depth);

/// Struck: up within `attack` seconds, then down by 60 dB in every `t60` seconds.
Curve struck(double attack, double t60);

/// Breathed: up within `attack`, full until `release` seconds before the end at `seconds`, then
/// gently down to 0.
Curve breathed(double attack, double seconds, double release);

}  // namespace chimewerk::synth
