#pragma once

#include <cstdint>
#include <vector>

#include "synth/blocks/sound.h"

namespace chimewerk::synth {

/// How loud a file shall be: an event's sound, or the quieter sound of a key, heard many times a second.
enum class Role { event, key };

/// From a recipe's sound at any level to the samples of its file: no DC, no click at either end, its loudest
/// 400 ms at the loudness of its role, no sample above -1 dBFS. Throws std::runtime_error when the sound is
/// silent.
std::vector<std::int16_t> mastered(const Sound& sound, Role role);

}  // namespace chimewerk::synth
