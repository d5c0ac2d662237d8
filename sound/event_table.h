#pragma once

#include <vector>

#include "sound/sound_event.h"

namespace chimewerk {

/// The 19 events in their order, with factory settings.
std::vector<SoundEvent> factoryEvents();

}  // namespace chimewerk
