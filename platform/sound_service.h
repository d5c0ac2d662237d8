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

    /// How loud it plays, 0.0 (silent) to 1.0 (as recorded); values outside are taken as the nearer
    /// end. Takes effect at `play()`.
    virtual void setVolume(float volume) = 0;

    /// Starts the sound and returns at once. Sounds that are playing go on beside it. Without an
    /// audio server it is silent; there is no other failure.
    virtual void play() = 0;

    /// The whole length of the sound.
    virtual Seconds duration() const = 0;
};

/// Makes sounds. Main thread only.
class SoundService {
public:
    virtual ~SoundService() = default;

    /// Returns the sound in the file at `path`, read again at each call. Null when the path names
    /// no regular file, or one that cannot be read or decoded or that holds no audio. Never waits,
    /// whatever the path is.
    virtual std::shared_ptr<Sound> soundFromFile(const std::string& path) = 0;

    /// The desktop's alert sound of this name, such as "Tink"; none for an unknown name.
    virtual std::shared_ptr<Sound> soundNamed(std::string_view name) = 0;
};

}  // namespace chimewerk
