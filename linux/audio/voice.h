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

/// Frames at the output rate, as a length of time.
using Frames = std::chrono::duration<std::int64_t, std::ratio<1, kOutputRate>>;

/// Returns how long this many frames last.
inline BootClock::duration lengthOf(std::int64_t frames) {
    return std::chrono::ceil<BootClock::duration>(Frames(frames));
}

/// How late a sound may be: then nobody would know any more what it was for.
inline constexpr std::chrono::seconds kPatience{1};

/// One sound on its way to the speaker.
struct Voice {
    std::uint64_t id = 0;
    std::vector<float> stereo;         // The first part, scaled to the volume, until it is sent.
    std::shared_ptr<SoundFile> sound;  // Yields the parts after it; null when there are none.
    float volume = 0;
    BootClock::time_point asked;  // When `play()` was called.
    bool decoding = false;        // The next part is being decoded.
};

/// Drops the voice that nobody will miss: the oldest of the short ones, which are mostly clicks of
/// keys; else the oldest. `voices` is not empty, and the oldest voice comes first.
template <typename Voices>
void dropOldest(Voices& voices) {
    const auto isShort = [](const Voice& voice) { return voice.sound == nullptr; };
    const auto found = std::ranges::find_if(voices, isShort);
    voices.erase(found == voices.end() ? voices.begin() : found);
}

}  // namespace chimewerk
