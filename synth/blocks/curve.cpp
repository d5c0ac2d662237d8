// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/curve.h"

#include <algorithm>
#include <cstddef>

#include "synth/blocks/arithmetic.h"

namespace chimewerk::synth {
namespace {

constexpr double kOctavesIn60Decibels = 9.9657842846620870;

double progress(double now, double seconds) {
    return std::clamp(now / seconds, 0.0, 1.0);
}

// Half a cosine from 0 to 1. It has no corner at either end, so it makes no click.
double rise(double now, double seconds) {
    return 0.5 - 0.5 * cosine(0.5 * progress(now, seconds));
}

}  // namespace

Curve operator*(Curve left, Curve right) {
    return Curve([left = std::move(left), right = std::move(right)](double now) {
        return left(now) * right(now);
    });
}

Curve glide(double from, double to, double seconds) {
    // Finds the logarithm by bisection: exact enough for a pitch, and the same on every machine.
    double low = -40.0;
    double high = 40.0;
    for (int i = 0; i < 60; ++i) {
        const double middle = 0.5 * (low + high);
        if (powerOfTwo(middle) < to / from) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return Curve([=](double now) { return from * powerOfTwo(low * progress(now, seconds)); });
}

Curve ramp(double from, double to, double seconds) {
    return Curve([=](double now) { return from + (to - from) * progress(now, seconds); });
}

Curve steps(std::vector<double> values, double secondsEach) {
    return Curve([values = std::move(values), secondsEach](double now) {
        const auto index = static_cast<std::size_t>(now / secondsEach);
        return values[std::min(index, values.size() - 1)];
    });
}

Curve wobble(Curve centre, double hertz, double semitonesEachWay) {
    return Curve([=, centre = std::move(centre)](double now) {
        return centre(now) * semitones(semitonesEachWay * sine(hertz * now));
    });
}

Curve tremolo(double hertz, double depth) {
    return Curve([=](double now) { return 1.0 - depth * (0.5 - 0.5 * cosine(hertz * now)); });
}

Curve struck(double attack, double t60) {
    return Curve([=](double now) {
        return rise(now, attack) *
               powerOfTwo(-kOctavesIn60Decibels * std::max(0.0, now - attack) / t60);
    });
}

Curve breathed(double attack, double seconds, double release) {
    return Curve([=](double now) { return rise(now, attack) * rise(seconds - now, release); });
}

}  // namespace chimewerk::synth
