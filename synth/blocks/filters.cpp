// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/filters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "synth/blocks/arithmetic.h"

namespace chimewerk::synth {
namespace {

struct Bands {
    double low = 0.0;
    double band = 0.0;
    double high = 0.0;
};

// A state-variable filter, integrated by the trapezoidal rule, which stays stable while its
// corner moves.
class StateVariableFilter {
public:
    Bands step(double input, double hertz, double damping) {
        const double turns = std::clamp(hertz, 5.0, 20000.0) / kSampleRate / 2.0;
        const double g = sine(turns) / cosine(turns);
        const double a = 1.0 / (1.0 + g * (g + damping));
        const double high = a * (input - (g + damping) * first_ - second_);
        const double band = g * high + first_;
        const double low = g * band + second_;
        first_ = band + g * high;
        second_ = low + g * band;
        return {low, band * damping, high};
    }

private:
    double first_ = 0.0;
    double second_ = 0.0;
};

Sound filtered(const Sound& sound, const Curve& hertz, double q, double Bands::*output) {
    StateVariableFilter filter;
    Sound result = sound;
    double index = 0.0;
    for (double& sample : result) {
        sample = filter.step(sample, hertz(index / kSampleRate), 1.0 / q).*output;
        index += 1.0;
    }
    return result;
}

// A delay line with feedback through a gentle low-pass, because walls absorb high tones first.
Sound comb(const Sound& sound, std::size_t delay, double feedback) {
    std::vector<double> line(delay, 0.0);
    double dull = 0.0;
    Sound result = sound;
    std::size_t at = 0;
    for (double& sample : result) {
        const double out = line[at];
        dull += 0.6 * (out - dull);
        line[at] = sample + feedback * dull;
        sample = out;
        at = (at + 1) % delay;
    }
    return result;
}

Sound allPass(const Sound& sound, std::size_t delay) {
    constexpr double kGain = 0.6;
    std::vector<double> line(delay, 0.0);
    Sound result = sound;
    std::size_t at = 0;
    for (double& sample : result) {
        const double out = line[at] - kGain * sample;
        line[at] = sample + kGain * out;
        sample = out;
        at = (at + 1) % delay;
    }
    return result;
}

}  // namespace

Sound lowPass(const Sound& sound, const Curve& hertz, double q) {
    return filtered(sound, hertz, q, &Bands::low);
}

Sound highPass(const Sound& sound, const Curve& hertz, double q) {
    return filtered(sound, hertz, q, &Bands::high);
}

Sound bandPass(const Sound& sound, const Curve& hertz, double q) {
    return filtered(sound, hertz, q, &Bands::band);
}

Sound inRoom(const Sound& sound, double level, double t60, double tail) {
    // Delays without a common factor, so that the echoes do not add up to a tone of their own.
    constexpr std::array<std::size_t, 8> kWalls = {907, 1021, 1153, 1277, 1399, 1531, 1667, 1801};
    constexpr std::array<std::size_t, 3> kCorners = {379, 241, 113};
    const Sound dry = sound.lasting(sound.seconds() + tail);
    Sound wet(dry.seconds());
    for (const std::size_t wall : kWalls) {
        const double seconds = static_cast<double>(wall) / kSampleRate;
        wet.add(0.0, comb(dry, wall, decibels(-60.0 * seconds / t60)), 1.0 / kWalls.size());
    }
    for (const std::size_t corner : kCorners) {
        wet = allPass(wet, corner);
    }
    return dry + wet * level;
}

Sound echoed(const Sound& sound, double seconds, double gain, int count) {
    Sound result = sound;
    double level = 1.0;
    for (int echo = 1; echo <= count; ++echo) {
        level *= gain;
        result.add(echo * seconds, sound, level);
    }
    return result;
}

Sound saturated(const Sound& sound, double drive) {
    Sound result = sound;
    for (double& sample : result) {
        const double x = drive * sample;
        sample = x / std::sqrt(1.0 + x * x);
    }
    return result;
}

}  // namespace chimewerk::synth
