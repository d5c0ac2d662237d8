// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

#include "linux/decoding/sound_file.h"

namespace chimewerk {

/// A sound that is about to play or playing.
struct Voice {
    std::uint64_t id = 0;
    std::vector<float> stereo;         // The first part, scaled to the volume.
    std::shared_ptr<SoundFile> sound;  // Gives the parts after it; null if there are none.
    float volume = 0;
    std::chrono::steady_clock::time_point asked;  // When `play()` was called.
    std::int64_t nextFrame = 0;  // The frame of the next part on the headroom's time line.
    bool decoding = false;       // The next part is being decoded.
};

}  // namespace chimewerk
