// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace chimewerk {

/// Records from the microphone. Destruction stops it. Main thread only, except for the tap.
class AudioEngine {
public:
    /// The first channel's samples of one buffer, nominally -1 to 1, valid only during the call;
    /// none if the buffer has no readable samples.
    using FirstChannel = std::optional<std::span<const float>>;
    using Tap = std::function<void(FirstChannel)>;

    virtual ~AudioEngine() = default;

    /// Sets the function to call for each buffer of about `frames` frames while the engine runs.
    /// The calls are made one at a time on the engine's thread, so `tap` must not block. Call this
    /// before `start()`.
    virtual void installTap(std::size_t frames, Tap tap) = 0;
    /// Removes the tap; waits for a running call to end.
    virtual void removeTap() = 0;

    /// Starts recording. Returns false, and stays silent, if it cannot. A missing microphone is no
    /// failure if the engine waits for one.
    virtual bool start() = 0;
    /// Stops recording; waits for a running call of the tap to end.
    virtual void stop() = 0;
};

/// The machine's microphone, and the permission to use it. Main thread only; must outlive
/// its engines.
class Microphone {
public:
    enum class Authorization {
        /// The user has not been asked yet.
        notDetermined,
        authorized,
        /// The user or the machine's administrator has denied it.
        denied
    };

    virtual ~Microphone() = default;

    /// Returns the current permission. The user may change it at any time.
    virtual Authorization authorization() = 0;

    /// Asks the user. Calls `answered` once, on any thread, immediately or much later.
    virtual void requestAccess(std::function<void(bool granted)> answered) = 0;

    /// Returns a new engine, which is not recording yet.
    virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
};

}  // namespace chimewerk
