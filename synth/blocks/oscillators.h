// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "synth/blocks/curve.h"
#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// A sine. Pitches are in hertz, lengths in seconds; amplitudes reach 1.
Sound sineTone(double seconds, const Curve& hertz);

/// A rectangle that is high for `duty` (0 to 1) of each period. Its edges are rounded
/// against aliasing.
Sound pulseTone(double seconds, const Curve& hertz, const Curve& duty);

/// A saw tooth with rounded edges.
Sound sawTone(double seconds, const Curve& hertz);

/// A triangle of 16 steps up and 16 down, as the converters of old game consoles made it.
Sound steppedTriangle(double seconds, const Curve& hertz);

/// A sine whose phase is modulated by a sine of `ratio` times its frequency, by up to
/// `index` radians.
Sound fmTone(double seconds, const Curve& hertz, double ratio, const Curve& index);

}  // namespace chimewerk::synth
