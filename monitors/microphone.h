// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace chimewerk {

/// One listening to the microphone. Main thread only, but for the tap. Its end stops it.
class AudioEngine {
public:
    /// What the tap is called with: the first channel's samples of one buffer, nominally -1 to 1,
    /// valid during the call only; none when the buffer holds no samples that can be read as such.
    using FirstChannel = std::optional<std::span<const float>>;
    using Tap = std::function<void(FirstChannel)>;

    virtual ~AudioEngine() = default;

    /// Has `tap` called for each buffer of about `frames` frames that is heard while the
    /// engine runs, one after another, on a thread of the engine's: it must not block. Call it
    /// before `start()`.
    virtual void installTap(std::size_t frames, Tap tap) = 0;
    /// Ends the calls; one that is under way has ended on return.
    virtual void removeTap() = 0;

    /// Begins to listen. False when it cannot; the engine then stays silent. A microphone that is
    /// missing, or that goes away, is no failure where the engine waits for one.
    virtual bool start() = 0;
    /// Ends the listening; a call of the tap that is under way has ended on return.
    virtual void stop() = 0;
};

/// The machine's microphone: the permission to listen to it, and the listening. Main thread only;
/// outlives its engines.
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

    /// How it stands now; the user may change it at any time.
    virtual Authorization authorization() = 0;

    /// Asks the user, and calls `answered` once, on any thread, at once or much later.
    virtual void requestAccess(std::function<void(bool granted)> answered) = 0;

    /// An engine that is not listening yet.
    virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
};

}  // namespace chimewerk
