// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/noise.h"

#include "synth/blocks/arithmetic.h"

namespace chimewerk::synth {

double Random::fraction() {
    // A Weyl sequence whose terms are scrambled by multiplications and shifts.
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t word = state_;
    word = (word ^ (word >> 30U)) * 0xBF58476D1CE4E5B9U;
    word = (word ^ (word >> 27U)) * 0x94D049BB133111EBU;
    word ^= word >> 31U;
    return static_cast<double>(word >> 11U) * 0x1p-53;
}

Sound noise(double seconds, std::uint64_t seed) {
    Random random(seed);
    return rendered(seconds, [&](double) { return random.bipolar(); });
}

Sound registerNoise(double seconds, const Curve& hertz, RegisterLoop loop) {
    const unsigned tap = loop == RegisterLoop::full ? 1U : 6U;
    unsigned bits = 1U;
    double due = 0.0;
    return rendered(seconds, [&](double now) {
        // Averages the parts of the sample that each bit fills, so that a fast clock does not
        // alias harshly.
        double sum = 0.0;
        constexpr int kParts = 4;
        for (int part = 0; part < kParts; ++part) {
            due += hertz(now) / (kSampleRate * kParts);
            while (due >= 1.0) {
                due -= 1.0;
                const unsigned feedback = (bits ^ (bits >> tap)) & 1U;
                bits = (bits >> 1U) | (feedback << 14U);
            }
            sum += (bits & 1U) != 0U ? 1.0 : -1.0;
        }
        return sum / kParts;
    });
}

Sound crackle(double seconds, const Curve& perSecond, std::uint64_t seed) {
    Random random(seed);
    return rendered(seconds, [&](double now) {
        if (random.fraction() >= perSecond(now) / kSampleRate) {
            return 0.0;
        }
        const double height = random.bipolar();
        return height * height * height;
    });
}

Sound stickSlip(double seconds, const Curve& hertz, double unrest, std::uint64_t seed) {
    Random random(seed);
    double stress = 0.9;
    double strength = 1.0;
    return rendered(seconds, [&](double now) {
        stress += hertz(now) / kSampleRate;
        if (stress < strength) {
            return 0.0;
        }
        const double slip = strength;
        stress = 0.0;
        strength = 1.0 + unrest * random.bipolar();
        return slip;
    });
}

}  // namespace chimewerk::synth
