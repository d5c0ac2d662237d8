// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/oscillators.h"

#include <cmath>

#include "synth/blocks/arithmetic.h"

namespace chimewerk::synth {
namespace {

constexpr double kTurnsPerRadian = 0.15915494309189533577;

// A phase in turns that advances with a frequency that may change at every sample.
class Phase {
public:
    double advance(double hertz) {
        const double now = turns_;
        step_ = hertz / kSampleRate;
        turns_ += step_;
        turns_ -= std::floor(turns_);
        return now;
    }
    double step() const { return step_; }

private:
    double turns_ = 0.0;
    double step_ = 0.0;
};

// The difference between a hard upward step of height 2 and a band-limited one, within a sample of
// the edge at phase 0.
double edgeCorrection(double phase, double step) {
    if (phase < step) {
        const double x = phase / step;
        return x + x - x * x - 1.0;
    }
    if (phase > 1.0 - step) {
        const double x = (phase - 1.0) / step;
        return x * x + x + x + 1.0;
    }
    return 0.0;
}

}  // namespace

Sound sineTone(double seconds, const Curve& hertz) {
    Phase phase;
    return rendered(seconds, [&](double now) { return sine(phase.advance(hertz(now))); });
}

Sound pulseTone(double seconds, const Curve& hertz, const Curve& duty) {
    Phase phase;
    return rendered(seconds, [&](double now) {
        const double up = phase.advance(hertz(now));
        const double width = duty(now);
        double down = up - width;
        down -= std::floor(down);
        const double level = up < width ? 1.0 : -1.0;
        const double mean = 2.0 * width - 1.0;
        return level - mean + edgeCorrection(up, phase.step()) - edgeCorrection(down, phase.step());
    });
}

Sound sawTone(double seconds, const Curve& hertz) {
    Phase phase;
    return rendered(seconds, [&](double now) {
        const double turns = phase.advance(hertz(now));
        return 2.0 * turns - 1.0 - edgeCorrection(turns, phase.step());
    });
}

Sound steppedTriangle(double seconds, const Curve& hertz) {
    Phase phase;
    return rendered(seconds, [&](double now) {
        const double turns = phase.advance(hertz(now));
        const double climbing = turns < 0.5 ? 2.0 * turns : 2.0 - 2.0 * turns;
        return std::floor(climbing * 15.999) / 7.5 - 1.0;
    });
}

Sound fmTone(double seconds, const Curve& hertz, double ratio, const Curve& index) {
    Phase carrier;
    Phase modulator;
    return rendered(seconds, [&](double now) {
        const double pitch = hertz(now);
        const double bend = index(now) * kTurnsPerRadian * sine(modulator.advance(pitch * ratio));
        return sine(carrier.advance(pitch) + bend);
    });
}

}  // namespace chimewerk::synth
