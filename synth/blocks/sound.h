// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

#include "synth/blocks/arithmetic.h"
#include "synth/blocks/curve.h"

namespace chimewerk::synth {

/// A mono sound under construction, at any level; mastering sets the final level.
class Sound {
public:
    Sound() = default;
    /// Silence.
    explicit Sound(double seconds);

    std::size_t size() const { return samples_.size(); }
    double seconds() const;
    double& operator[](std::size_t index) { return samples_[index]; }
    double operator[](std::size_t index) const { return samples_[index]; }
    auto begin() { return samples_.begin(); }
    auto end() { return samples_.end(); }
    auto begin() const { return samples_.begin(); }
    auto end() const { return samples_.end(); }

    /// Mixes in `other` from `atSeconds` on. Extends this sound if `other` ends later.
    Sound& add(double atSeconds, const Sound& other, double gain = 1.0);

    /// Returns the sound cut, or extended with silence, to this length.
    Sound lasting(double seconds) const;

    /// Returns the sound at this length, with its end faded out over `release` seconds as by
    /// a damper.
    Sound damped(double seconds, double release) const;

    /// Returns the sound scaled to a peak of 1; silence stays silence.
    Sound normalised() const;

private:
    std::vector<double> samples_;
};

/// Mixes both; as long as the longer one.
Sound operator+(Sound left, const Sound& right);
/// Returns the sound after a silence of this length.
Sound after(double seconds, const Sound& sound);
Sound operator*(Sound sound, double gain);
/// Multiplies the sound by a level that changes with time.
Sound operator*(Sound sound, const Curve& level);
/// Ring modulation; as long as the shorter one.
Sound operator*(const Sound& left, const Sound& right);

/// Calls `sampleAt(seconds)` for each sample in order.
template <typename SampleAt>
Sound rendered(double seconds, SampleAt sampleAt) {
    Sound sound(seconds);
    double index = 0.0;
    for (double& sample : sound) {
        sample = sampleAt(index / kSampleRate);
        index += 1.0;
    }
    return sound;
}

}  // namespace chimewerk::synth
