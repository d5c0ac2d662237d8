// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_operation.h"

namespace chimewerk {

/// One playback stream on the sound server, in the output form (see pcm_reader.h). It starts
/// corked. Used, and destroyed, under the connection's lock; the callbacks come under it too, and
/// never from the constructor.
class PulseStream {
public:
    struct Callbacks {
        /// The server has made the stream; only now may it be used.
        std::function<void()> ready;
        /// The stream has ended for good: the server ended it, or it could not be made. The
        /// callback may destroy the stream.
        std::function<void()> failed;
        /// The server can take this many more frames. Optional.
        std::function<void(std::size_t frames)> wanted = {};
    };

    /// Asks the server for a stream that keeps about `latencyMilliseconds` of sound between itself
    /// and the speaker.
    PulseStream(PulseConnection& connection, pa_context& context, unsigned latencyMilliseconds,
                Callbacks callbacks);
    PulseStream(const PulseStream&) = delete;
    PulseStream& operator=(const PulseStream&) = delete;
    ~PulseStream();

    /// Appends frames to those that wait to be played.
    void write(std::span<const float> stereo);
    /// Starts playing what has been written.
    void uncork();
    /// Stops playing at once and drops the frames that wait.
    void corkAndFlush();
    /// Calls `drained` when everything written has been heard. A later `write()` or
    /// `corkAndFlush()` cancels that.
    void drain(std::function<void()> drained);
    /// Returns how many frames the server can take now.
    std::size_t wantedFrames() const;
    /// Asks the server how many frames wait to be played, and calls `answer` with them, or with
    /// none if the server does not know.
    void askQueued(std::function<void(std::optional<std::int64_t> frames)> answer);

private:
    bool connect(pa_context& context, unsigned latencyMilliseconds);
    void onStateChange();
    void fail();

    Callbacks callbacks_;
    PulseHandle<pa_stream> stream_;  // Null if it could not be made.
    std::unique_ptr<PulseConnection::Alarm> failing_;
    std::function<void()> drained_;
    std::function<void(std::optional<std::int64_t>)> queuedAnswer_;
    PulseOperation draining_;
    PulseOperation asking_;
};

}  // namespace chimewerk
