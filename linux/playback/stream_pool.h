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
#include <optional>
#include <span>

#include "linux/audio/boot_clock.h"
#include "linux/audio/pulse_connection.h"
#include "linux/playback/pulse_stream.h"
#include "linux/playback/sent_sound.h"
#include "linux/playback/voice.h"
#include "linux/playback/voice_parts.h"

namespace chimewerk {

/// Streams that are connected in advance and corked, which costs nothing while nothing plays. A
/// voice is written to an idle stream, which is then uncorked; after the voice the stream is corked
/// again. The pool grows with the number of simultaneous voices, up to a limit. Used under the
/// connection's lock.
///
/// When a voice starts and the sum of all voices would leave the range, the frames of the other
/// voices that have not been played are sent again with lower gains (see level_shares.h).
class StreamPool {
public:
    struct Callbacks {
        /// A stream has become idle.
        std::function<void()> quiet;
        /// `deadline()` may have changed.
        std::function<void()> deadlineChanged;
        /// Returns for how many frames sounds outside the pool will still play. They take half of
        /// the range.
        std::function<std::int64_t()> framesBeside;
    };

    /// `connection` and `parts` must outlive the pool.
    StreamPool(PulseConnection& connection, VoiceParts& parts, Callbacks callbacks)
        : connection_(connection), parts_(parts), callbacks_(std::move(callbacks)) {}

    /// Makes the first streams. `context` must be valid until `clear()`.
    void fill(pa_context& context);
    /// Destroys all streams and the voices that play on them; voices that wait for a stream
    /// are kept.
    void clear();

    /// Plays the voice on an idle stream, or keeps it until one is idle, for up to a second.
    /// Returns false, and does not take the voice, if the pool is at its limit and all streams
    /// play.
    bool start(Voice& voice);
    /// Plays the next part of a long sound. Returns false if the pool does not play this voice.
    bool deliver(std::uint64_t voice, std::span<float> stereo, bool last);
    /// Divides the range among all sounds again. Call it when `framesBeside` has changed.
    void share();

    /// Returns when the first voice becomes overdue if the server makes no progress until then;
    /// none if there are no voices.
    std::optional<BootClock::time_point> deadline() const;
    /// Ends the voices that are a second late, because the device, the program or the machine had
    /// stopped.
    void endOverdue(BootClock::time_point now);

    bool isQuiet() const;
    /// Returns the largest number of streams since the last `shrink()` or `clear()`.
    std::size_t mostStreams() const { return most_; }
    /// Returns whether there were more streams than are kept while nothing plays.
    bool isLarge() const;
    /// Destroys the streams that only a burst of sounds needed. No stream may be playing.
    void shrink();

private:
    using Time = BootClock::time_point;

    struct PooledStream {
        enum class State { connecting, idle, playing };
        State state = State::connecting;
        std::unique_ptr<PulseStream> stream = {};
        // The voice that plays:
        Voice voice = {};
        SentSound sound = {};
        Time uncorked = {};
        std::optional<Time> started = {};  // When the first frame was played.
        // For a long sound:
        std::int64_t heard = 0;  // The frames that the server has played for certain.
        Time progressed = {};    // When that grew, or the next part was asked for or sent.
        std::unique_ptr<PulseConnection::Alarm> refill = {};
    };

    void addStream();
    void onStarted(PooledStream& stream);
    void onFailed(PooledStream& stream);
    void begin(PooledStream& stream, Voice voice);
    void finish(PooledStream& stream);
    void refill(PooledStream& stream);
    void onQueued(PooledStream& stream, const PulseStream::Queued& queued);
    void keepWaiting(Voice voice);
    void takeWaiting(PooledStream& stream);
    Time deviceTime(Time now) const;
    static std::int64_t positionOf(const PooledStream& stream, Time deviceTime);
    static Time deadlineOf(const PooledStream& stream);

    PulseConnection& connection_;
    VoiceParts& parts_;
    const Callbacks callbacks_;
    pa_context* context_ = nullptr;
    std::list<PooledStream> streams_;  // Their callbacks hold references to them.
    std::deque<Voice> waiting_;        // The oldest first.
    std::size_t most_ = 0;
    Time moved_ = {};  // When the device was last known to play.
};

}  // namespace chimewerk
