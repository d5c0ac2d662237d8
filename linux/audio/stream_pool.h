// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <span>

#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_stream.h"
#include "linux/audio/voice.h"
#include "linux/audio/voice_parts.h"

namespace chimewerk {

/// Streams that are connected beforehand and corked, which costs nothing while it is quiet. A voice
/// takes one of them, is written to it and uncorks it; when it has been heard the stream is corked
/// again. The pool grows with the voices that play at once, up to a limit. Used under the
/// connection's lock.
class StreamPool {
public:
    /// Calls `quiet` when a stream has become idle. `connection` and `parts` outlive the pool.
    StreamPool(PulseConnection& connection, VoiceParts& parts, std::function<void()> quiet)
        : connection_(connection), parts_(parts), quiet_(std::move(quiet)) {}

    /// Makes the first streams. `context` is valid until `clear()`.
    void fill(pa_context& context);
    /// Destroys all streams, with the voices that play on them; those that wait for a stream stay.
    void clear();

    /// Plays the voice on an idle stream, or keeps it until there is one, for a second at most:
    /// then nobody would know any more what it was for. Returns false, and leaves the voice as it
    /// is, if as many voices play as the pool may have streams.
    bool start(Voice& voice);
    /// Plays the next part of a long sound. Returns false if the pool does not play this voice.
    bool deliver(std::uint64_t voice, std::span<float> stereo, bool last);

    bool isQuiet() const;
    std::size_t size() const { return streams_.size(); }
    /// Whether there are more streams than are kept while it is quiet.
    bool isLarge() const;
    /// Destroys the streams that only a burst of sounds has needed. The pool is quiet.
    void shrink();

private:
    using Clock = std::chrono::steady_clock;

    struct PooledStream {
        enum class State { connecting, idle, playing };
        State state = State::connecting;
        std::unique_ptr<PulseStream> stream = {};
        Voice voice = {};
        Clock::time_point heardBy = {};  // When the voice should have been heard to its end.
        std::unique_ptr<PulseConnection::Alarm> refill = {};
    };

    void addStream();
    void onFailed(PooledStream& stream);
    void begin(PooledStream& stream, Voice voice);
    void finish(PooledStream& stream);
    void refill(PooledStream& stream);
    void keepWaiting(Voice voice);
    void takeWaiting(PooledStream& stream);
    void reclaimOverdue();

    PulseConnection& connection_;
    VoiceParts& parts_;
    const std::function<void()> quiet_;
    pa_context* context_ = nullptr;
    std::list<PooledStream> streams_;  // Their callbacks hold references to them.
    std::deque<Voice> waiting_;
};

}  // namespace chimewerk
