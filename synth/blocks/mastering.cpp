// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/mastering.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "synth/blocks/arithmetic.h"
#include "synth/blocks/filters.h"

namespace chimewerk::synth {
namespace {

constexpr double kEventLoudness = -19.0;  // LUFS
constexpr double kKeyLoudness = -27.0;
constexpr double kCeiling = 0.885;  // -1.06 dBFS: rounding to 16 bits stays below -1
constexpr double kKnee = 0.7;

// A section of the loudness weighting of ITU-R BS.1770 at 48 kHz.
class Biquad {
public:
    Biquad(double b0, double b1, double b2, double a1, double a2)
        : b0_(b0), b1_(b1), b2_(b2), a1_(a1), a2_(a2) {}

    double step(double input) {
        const double output = b0_ * input + first_;
        first_ = b1_ * input - a1_ * output + second_;
        second_ = b2_ * input - a2_ * output;
        return output;
    }

private:
    double b0_, b1_, b2_, a1_, a2_;
    double first_ = 0.0;
    double second_ = 0.0;
};

// Returns the weighted power of the loudest 400 ms. The sounds are too short for the standard's
// gated measurement, so silence is assumed around them. Both loudspeakers play the channel, so it
// counts twice.
double loudestPower(const Sound& sound) {
    constexpr std::size_t kWindow = 19200;
    Biquad head(1.53512485958697, -2.69169618940638, 1.19839281085285, -1.69065929318241,
                0.73248077421585);
    Biquad body(1.0, -2.0, 1.0, -1.99004745483398, 0.99007225036621);
    std::vector<double> squares;
    double sum = 0.0;
    double loudest = 0.0;
    for (const double sample : sound) {
        const double weighted = body.step(head.step(sample));
        squares.push_back(weighted * weighted);
        sum += squares.back();
        if (squares.size() > kWindow) {
            sum -= squares[squares.size() - 1 - kWindow];
        }
        loudest = std::max(loudest, sum);
    }
    return 2.0 * loudest / kWindow;
}

// Bends the highest peaks towards the ceiling. Samples below the knee do not change.
Sound limited(Sound sound) {
    for (double& sample : sound) {
        const double size = std::abs(sample);
        if (size > kKnee) {
            const double excess = (size - kKnee) / (kCeiling - kKnee);
            sample = std::copysign(kKnee + (kCeiling - kKnee) * excess / (1.0 + excess), sample);
        }
    }
    return sound;
}

// Removes the inaudible end.
Sound trimmed(const Sound& sound, Role role) {
    const double inaudible = decibels(-54.0);
    const auto shortest =
        static_cast<std::size_t>((role == Role::event ? 0.16 : 0.042) * kSampleRate);
    std::size_t length = sound.size();
    while (length > shortest && std::abs(sound[length - 1]) < inaudible) {
        --length;
    }
    return sound.lasting(static_cast<double>(length) / kSampleRate);
}

Sound withCleanEdges(const Sound& sound, Role role) {
    const Sound heard = trimmed(highPass(sound, 25.0), role);
    return heard * breathed(0.0006, heard.seconds(), std::min(0.012, 0.2 * heard.seconds()));
}

}  // namespace

std::vector<std::int16_t> mastered(const Sound& sound, Role role) {
    const Sound clean = withCleanEdges(sound.normalised(), role);
    // -0.691 is the standard's offset: a full-scale sine of 997 Hz in one channel then
    // measures -3.01.
    const double wanted =
        decibels(2.0 * ((role == Role::event ? kEventLoudness : kKeyLoudness) + 0.691));
    double gain = 1.0;
    Sound loud = clean;
    for (int pass = 0; pass < 12; ++pass) {
        const double power = loudestPower(loud);
        if (!(power > 0.0)) {
            throw std::runtime_error("the sound is silent");
        }
        gain *= std::sqrt(wanted / power);
        loud = limited(clean * gain);
    }
    std::vector<std::int16_t> samples;
    samples.reserve(loud.size());
    for (const double sample : loud) {
        samples.push_back(static_cast<std::int16_t>(std::floor(sample * 32767.0 + 0.5)));
    }
    return samples;
}

}  // namespace chimewerk::synth
