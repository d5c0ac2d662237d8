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

/// Streams that are connected in advance and corked, which costs nothing while nothing plays. A
/// voice is written to an idle stream, which is then uncorked; after the voice the stream is corked
/// again. The pool grows with the number of simultaneous voices, up to a limit. Used under the
/// connection's lock.
class StreamPool {
public:
    /// Calls `quiet` when a stream has become idle. `connection` and `parts` must outlive the pool.
    StreamPool(PulseConnection& connection, VoiceParts& parts, std::function<void()> quiet)
        : connection_(connection), parts_(parts), quiet_(std::move(quiet)) {}

    /// Makes the first streams. `context` must be valid until `clear()`.
    void fill(pa_context& context);
    /// Destroys all streams and the voices that play on them; voices that wait for a stream
    /// are kept.
    void clear();

    /// Plays the voice on an idle stream, or keeps it until one is idle, for up to a second: a
    /// later sound would confuse the user. Returns false, and does not take the voice, if the pool
    /// is at its limit and all streams play.
    bool start(Voice& voice);
    /// Plays the next part of a long sound. Returns false if the pool does not play this voice.
    bool deliver(std::uint64_t voice, std::span<float> stereo, bool last);

    bool isQuiet() const;
    std::size_t size() const { return streams_.size(); }
    /// Returns whether there are more streams than are kept while nothing plays.
    bool isLarge() const;
    /// Destroys the streams that only a burst of sounds needed. No stream may be playing.
    void shrink();

private:
    using Clock = std::chrono::steady_clock;

    struct PooledStream {
        enum class State { connecting, idle, playing };
        State state = State::connecting;
        std::unique_ptr<PulseStream> stream = {};
        Voice voice = {};
        Clock::time_point heardBy = {};  // When the voice should have been played to its end.
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
