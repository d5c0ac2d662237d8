// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/main_queue.h"

namespace chimewerk {

/// One sound, ready to be played once. Main thread only.
class Sound {
public:
    virtual ~Sound() = default;

    /// Sets the volume, 0.0 (silent) to 1.0 (as recorded); other values are clamped. Takes effect
    /// at `play()`.
    virtual void setVolume(float volume) = 0;

    /// Starts the sound and returns at once. Other sounds go on. Silent if there is no audio
    /// server; there is no other failure.
    virtual void play() = 0;

    /// The length of the whole sound.
    virtual Seconds duration() const = 0;
};

/// Makes sounds. Main thread only.
class SoundService {
public:
    virtual ~SoundService() = default;

    /// Returns the sound in the file at `path`, which is read again at each call. Null if `path`
    /// is no regular file, cannot be read or decoded, or holds no audio. Never blocks, whatever
    /// `path` names.
    virtual std::shared_ptr<Sound> soundFromFile(const std::string& path) = 0;

    /// Returns the alert sound of this name, such as "Tink"; null if the name is unknown.
    virtual std::shared_ptr<Sound> soundNamed(std::string_view name) = 0;
};

}  // namespace chimewerk
