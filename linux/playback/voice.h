// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <ratio>
#include <vector>

#include "linux/audio/boot_clock.h"
#include "linux/decoding/pcm_reader.h"
#include "linux/decoding/sound_file.h"

namespace chimewerk {

/// A duration in frames at the output rate.
using Frames = std::chrono::duration<std::int64_t, std::ratio<1, kOutputRate>>;

/// Returns the duration of this number of frames.
inline BootClock::duration lengthOf(std::int64_t frames) {
    return std::chrono::ceil<BootClock::duration>(Frames(frames));
}

/// How late a sound may start: a later one would confuse the user.
inline constexpr std::chrono::seconds kPatience{1};

/// A sound that is about to play or playing.
struct Voice {
    std::uint64_t id = 0;
    std::vector<float> stereo;         // The first part, scaled to the volume, until it is sent.
    std::shared_ptr<SoundFile> sound;  // Yields the parts after it; null when there are none.
    float volume = 0;
    BootClock::time_point asked;  // When `play()` was called.
    bool decoding = false;        // The next part is being decoded.
};

/// Removes the oldest short voice, usually the click of a key, or the oldest voice if none is
/// short. `voices` must not be empty; the oldest voice comes first.
template <typename Voices>
void dropOldest(Voices& voices) {
    const auto isShort = [](const Voice& voice) { return voice.sound == nullptr; };
    const auto found = std::ranges::find_if(voices, isShort);
    voices.erase(found == voices.end() ? voices.begin() : found);
}

}  // namespace chimewerk
