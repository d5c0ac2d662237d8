// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// One vibration mode of a body: its frequency in hertz, the seconds in which it falls by 60 dB,
/// and its gain.
struct Mode {
    double hertz;
    double t60;
    double gain;
};

/// A body, such as wood, a spring or a glass: resonators that a force drives.
using Body = std::vector<Mode>;

/// Returns the sound of the body under `force`. It rings for `tail` seconds after the force
/// has ended.
Sound driven(const Body& body, const Sound& force, double tail);

/// Returns the force of a blow with a contact time of `milliseconds`: the shorter, the harder and
/// the brighter.
Sound blow(double milliseconds);

/// Returns the same body at another size: all frequencies times `pitch`, all decay times
/// times `ringing`.
Body resized(Body body, double pitch, double ringing = 1.0);

/// One sine of a struck body: its frequency as a ratio to the fundamental, its level, and the
/// seconds in which it falls by 60 dB.
struct Partial {
    double ratio;
    double level;
    double t60;
};

/// All partials struck at once, rising within `attack` seconds. Inaudibly high partials are
/// left out.
Sound struckPartials(double seconds, double hertz, const std::vector<Partial>& partials,
                     double attack);

}  // namespace chimewerk::synth
