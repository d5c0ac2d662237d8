// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "synth/blocks/sound.h"

#include <algorithm>
#include <cmath>

#include "synth/blocks/arithmetic.h"

namespace chimewerk::synth {
namespace {

std::size_t samplesIn(double seconds) {
    return static_cast<std::size_t>(std::floor(std::max(0.0, seconds) * kSampleRate + 0.5));
}

}  // namespace

Sound::Sound(double seconds) : samples_(samplesIn(seconds), 0.0) {}

double Sound::seconds() const {
    return static_cast<double>(size()) / kSampleRate;
}

Sound& Sound::add(double atSeconds, const Sound& other, double gain) {
    const std::size_t start = samplesIn(atSeconds);
    samples_.resize(std::max(size(), start + other.size()), 0.0);
    for (std::size_t i = 0; i < other.size(); ++i) {
        samples_[start + i] += gain * other[i];
    }
    return *this;
}

Sound Sound::lasting(double seconds) const {
    Sound result = *this;
    result.samples_.resize(samplesIn(seconds), 0.0);
    return result;
}

Sound Sound::damped(double seconds, double release) const {
    return lasting(seconds) * breathed(1.0 / kSampleRate, seconds, release);
}

Sound Sound::normalised() const {
    double peak = 0.0;
    for (const double sample : samples_) {
        peak = std::max(peak, std::abs(sample));
    }
    return peak > 0.0 ? *this * (1.0 / peak) : *this;
}

Sound operator+(Sound left, const Sound& right) {
    return left.add(0.0, right);
}

Sound after(double seconds, const Sound& sound) {
    return Sound().add(seconds, sound);
}

Sound operator*(Sound sound, double gain) {
    for (double& sample : sound) {
        sample *= gain;
    }
    return sound;
}

Sound operator*(Sound sound, const Curve& level) {
    double index = 0.0;
    for (double& sample : sound) {
        sample *= level(index / kSampleRate);
        index += 1.0;
    }
    return sound;
}

Sound operator*(const Sound& left, const Sound& right) {
    Sound product = left.size() < right.size() ? left : right;
    for (std::size_t i = 0; i < product.size(); ++i) {
        product[i] = left[i] * right[i];
    }
    return product;
}

}  // namespace chimewerk::synth
