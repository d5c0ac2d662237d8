// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <vector>

#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// The loudness class of a file: the sound of an event, or the quieter sound of a key, which is
/// heard far more often.
enum class Role { event, key };

/// Returns the samples of a recipe's file: no DC, no click at either end, the loudest 400 ms at the
/// loudness of its role, no sample above -1 dBFS. Throws std::runtime_error if the sound is silent.
std::vector<std::int16_t> mastered(const Sound& sound, Role role);

}  // namespace chimewerk::synth
