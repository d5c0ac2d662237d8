// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/arithmetic.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace chimewerk::synth {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kLn2 = 0.69314718055994530942;

// Taylor series, the highest power first: sin x / x in powers of x squared for up to a quarter
// turn, and e to the x for up to half an octave.
constexpr std::array<double, 9> kSineSeries = [] {
    std::array<double, 9> series{};
    double coefficient = 1.0;
    for (int n = 0; n < 9; ++n) {
        series.at(static_cast<std::size_t>(8 - n)) = coefficient;
        coefficient /= -(2.0 * n + 2.0) * (2.0 * n + 3.0);
    }
    return series;
}();
constexpr std::array<double, 13> kExponentialSeries = [] {
    std::array<double, 13> series{};
    double coefficient = 1.0;
    for (int n = 0; n < 13; ++n) {
        series.at(static_cast<std::size_t>(12 - n)) = coefficient;
        coefficient /= n + 1.0;
    }
    return series;
}();

}  // namespace

double sine(double turns) {
    double folded = turns - std::floor(turns + 0.5);
    if (folded > 0.25) {
        folded = 0.5 - folded;
    } else if (folded < -0.25) {
        folded = -0.5 - folded;
    }
    const double x = 2.0 * kPi * folded;
    const double square = x * x;
    double sum = 0.0;
    for (const double coefficient : kSineSeries) {
        sum = sum * square + coefficient;
    }
    return sum * x;
}

double cosine(double turns) {
    return sine(turns + 0.25);
}

double powerOfTwo(double exponent) {
    const double whole = std::floor(exponent + 0.5);
    const double x = (exponent - whole) * kLn2;
    double sum = 0.0;
    for (const double coefficient : kExponentialSeries) {
        sum = sum * x + coefficient;
    }
    return std::ldexp(sum, static_cast<int>(whole));
}

double decibels(double level) {
    return powerOfTwo(level / 6.0205999132796239);
}

double semitones(double count) {
    return powerOfTwo(count / 12.0);
}

}  // namespace chimewerk::synth
