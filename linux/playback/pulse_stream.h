// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_operation.h"

namespace chimewerk {

/// One playback stream on the audio server, in the output form (see pcm_reader.h). It starts
/// corked. Used, and destroyed, under the connection's lock; the callbacks are called under it too,
/// but never by the constructor.
class PulseStream {
public:
    struct Callbacks {
        /// The server has created the stream, which may be used from now on.
        std::function<void()> ready;
        /// The stream has ended for good: the server ended it, or it could not be made. May destroy
        /// the stream.
        std::function<void()> failed;
        /// The server has started to play the frames written, after the stream was uncorked or had
        /// run dry. Optional.
        std::function<void()> started = {};
        /// The server can take this many more frames. Optional.
        std::function<void(std::size_t frames)> wanted = {};
    };

    /// How much sound the server keeps.
    struct Buffering {
        unsigned milliseconds;         // Between the program and the speaker, about.
        unsigned requestMilliseconds;  // The server asks for more when so much is missing.
    };

    /// Requests a stream. The server has the device play in pieces of half of what is buffered
    /// beyond two requests.
    PulseStream(PulseConnection& connection, pa_context& context, Buffering buffering,
                Callbacks callbacks);
    PulseStream(const PulseStream&) = delete;
    PulseStream& operator=(const PulseStream&) = delete;
    ~PulseStream();

    /// Appends frames to those waiting to be played. With `rewind`, the first ones replace the last
    /// `rewind` frames written, as far as these have not been played; `stereo` is at least that
    /// long.
    void write(std::span<const float> stereo, std::size_t rewind = 0);
    /// Starts playing the frames written.
    void uncork();
    /// Stops playing. Call it when everything written has been played.
    void cork();
    /// Calls `drained` when everything written has been played. A later `write()` without `rewind`,
    /// or `cork()`, cancels that.
    void drain(std::function<void()> drained);
    /// Returns the number of frames that the server can take now.
    std::size_t wantedFrames() const;
    /// The frames waiting to be played.
    struct Queued {
        std::int64_t frames = 0;
        std::chrono::microseconds age = {};  // The time since the server counted them.
    };
    /// Requests the number of frames waiting to be played and calls `answer` with it, or with none
    /// if the server does not know.
    void askQueued(std::function<void(std::optional<Queued>)> answer);

private:
    bool connect(pa_context& context, Buffering buffering);
    void onStateChange();
    void fail();

    Callbacks callbacks_;
    PulseHandle<pa_stream> stream_;  // Null if it could not be made.
    std::unique_ptr<PulseConnection::Alarm> failing_;
    std::function<void()> drained_;
    std::function<void(std::optional<Queued>)> queuedAnswer_;
    PulseOperation draining_;
    PulseOperation asking_;
};

}  // namespace chimewerk
