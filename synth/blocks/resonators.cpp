// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/resonators.h"

#include "synth/blocks/arithmetic.h"

namespace chimewerk::synth {
namespace {

constexpr double kHighestMode = 18000.0;

// A two-pole resonator: a unit impulse makes a sine of amplitude 1 that decays exponentially.
void addMode(Sound& sum, const Mode& mode, const Sound& force) {
    const double radius = decibels(-60.0 / (mode.t60 * kSampleRate));
    const double turns = mode.hertz / kSampleRate;
    const double first = 2.0 * radius * cosine(turns);
    const double second = -radius * radius;
    const double input = sine(turns) * mode.gain;
    double last = 0.0;
    double lastButOne = 0.0;
    for (std::size_t i = 0; i < sum.size(); ++i) {
        const double drive = i < force.size() ? force[i] : 0.0;
        const double now = input * drive + first * last + second * lastButOne;
        lastButOne = last;
        last = now;
        sum[i] += now;
    }
}

}  // namespace

Sound driven(const Body& body, const Sound& force, double tail) {
    Sound sum(force.seconds() + tail);
    for (const Mode& mode : body) {
        if (mode.hertz < kHighestMode) {
            addMode(sum, mode, force);
        }
    }
    return sum;
}

Sound blow(double milliseconds) {
    const double seconds = milliseconds / 1000.0;
    const Sound force = rendered(seconds, [=](double now) {
        const double push = sine(0.5 * now / seconds);
        return push * push;
    });
    return force * (2.0 / static_cast<double>(force.size()));
}

Body resized(Body body, double pitch, double ringing) {
    for (Mode& mode : body) {
        mode.hertz *= pitch;
        mode.t60 *= ringing;
    }
    return body;
}

Sound struckPartials(double seconds, double hertz, const std::vector<Partial>& partials,
                     double attack) {
    Body body;
    for (const Partial& partial : partials) {
        body.push_back({hertz * partial.ratio, partial.t60, partial.level});
    }
    Sound impulse(1.0 / kSampleRate);
    impulse[0] = 1.0;
    return driven(body, impulse, seconds).lasting(seconds) *
           breathed(attack, seconds, 1.0 / kSampleRate);
}

}  // namespace chimewerk::synth
