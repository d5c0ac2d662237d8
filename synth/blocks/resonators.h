// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// One way in which a body swings: its frequency in hertz, how long it takes to fall by 60 dB, and
/// how readily it answers.
struct Mode {
    double hertz;
    double t60;
    double gain;
};

/// A body: wood, a spring, a glass. Each mode is a resonator that any force may drive.
using Body = std::vector<Mode>;

/// The sound of the body under `force`; it rings on for `tail` seconds after the force has ended.
Sound driven(const Body& body, const Sound& force, double tail);

/// The force of a blow that touches for `milliseconds`: the shorter, the harder and the brighter.
Sound blow(double milliseconds);

/// The same body at another size: all its frequencies times `pitch`, all its decay times
/// times `ringing`.
Body resized(Body body, double pitch, double ringing = 1.0);

/// One sine of a struck body: its frequency as a ratio to the fundamental, its level, and how long
/// it takes to fall by 60 dB.
struct Partial {
    double ratio;
    double level;
    double t60;
};

/// All partials struck at once, up within `attack` seconds. Partials above hearing are left out.
Sound struckPartials(double seconds, double hertz, const std::vector<Partial>& partials,
                     double attack);

}  // namespace chimewerk::synth
