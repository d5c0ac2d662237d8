#pragma once

#include <pulse/pulseaudio.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "linux/audio/pulse_operation.h"

namespace chimewerk {

/// One playback stream on the sound server, in the output form (see pcm_reader.h). It begins corked.
/// Everything happens under the lock of the connection, and so do the callbacks.
class PulseStream {
public:
    struct Callbacks {
        /// The server has made the stream.
        std::function<void()> ready;
        /// The stream has ended for good, at the server's command; the callback may destroy it.
        std::function<void()> failed;
        /// The server wants this many frames more; only where it is set.
        std::function<void(std::size_t frames)> wanted = {};
    };

    /// Asks the server for a stream that keeps about `latencyMilliseconds` of sound between itself and the
    /// speaker.
    PulseStream(pa_context& context, unsigned latencyMilliseconds, Callbacks callbacks);
    PulseStream(const PulseStream&) = delete;
    PulseStream& operator=(const PulseStream&) = delete;
    ~PulseStream();

    /// Hands over frames to be played next: behind those that wait, or at once when none do.
    void write(std::span<const float> stereo);
    /// Begins to play what is written.
    void uncork();
    /// Ends playing at once and forgets what waits.
    void corkAndFlush();
    /// Calls `drained` when everything written has been heard, unless more is written or it is corked before.
    void drain(std::function<void()> drained);
    /// How many frames the server would take now to have its fill.
    std::size_t wantedFrames() const;
    /// Asks how many frames wait to be played; the answer is none when the server cannot tell.
    void askQueued(std::function<void(std::optional<std::int64_t> frames)> answer);

private:
    void stateChanged();

    pa_stream* stream_;
    Callbacks callbacks_;
    std::function<void()> drained_;
    std::function<void(std::optional<std::int64_t>)> queuedAnswer_;
    PulseOperation draining_;
    PulseOperation asking_;
};

}  // namespace chimewerk
