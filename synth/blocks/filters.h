// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "synth/blocks/curve.h"
#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// Second-order filters (12 dB per octave; the band-pass 6 dB on each side). The corner, in hertz
/// below 20,000, may move with time. At a `q` of 0.7 there is no peak at the corner; a higher `q`
/// is narrower.
Sound lowPass(const Sound& sound, const Curve& hertz, double q = 0.7);
Sound highPass(const Sound& sound, const Curve& hertz, double q = 0.7);
/// Has a gain of 1 at its centre.
Sound bandPass(const Sound& sound, const Curve& hertz, double q);

/// Adds a small room at `level` that fades by 60 dB in `t60` seconds; the result is `tail`
/// seconds longer.
Sound inRoom(const Sound& sound, double level, double t60, double tail);

/// Adds `count` copies of the sound, each `seconds` later than and `gain` times the one before.
Sound echoed(const Sound& sound, double seconds, double gain, int count);

/// Soft saturation below a ceiling of 1: amplifies by `drive` and rounds off loud samples.
Sound saturated(const Sound& sound, double drive);

}  // namespace chimewerk::synth
