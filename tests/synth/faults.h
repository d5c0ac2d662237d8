#pragma once

#include <string>

#include "synth/levels.h"

namespace chimewerk::sounds {

enum class Kind { event, key };

/// What is wrong with a single sound, in words; empty when nothing is.
std::string faultsOf(const Levels& levels, Kind kind);

}  // namespace chimewerk::sounds
