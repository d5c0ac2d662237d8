// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "linux/audio/boot_clock.h"
#include "linux/audio/pulse_connection.h"
#include "linux/playback/overflow_mixer.h"
#include "linux/playback/pulse_stream.h"
#include "linux/playback/voice.h"
#include "linux/playback/voice_parts.h"

namespace chimewerk {

/// Plays the voices for which the pool has no stream: mixes them and sends the sum through one
/// stream, which is made for the first voice. Used under the connection's lock.
class OverflowStream {
public:
    /// Calls `quiet` when all voices have been played. `connection` and `parts` must outlive
    /// this object.
    OverflowStream(PulseConnection& connection, VoiceParts& parts, std::function<void()> quiet)
        : connection_(connection), parts_(parts), quiet_(std::move(quiet)) {}

    /// Plays the voice. `context` must be valid until `clear()`.
    void start(pa_context& context, Voice voice);
    /// Plays the next part of a long sound if this object still plays it.
    void deliver(std::uint64_t voice, std::span<float> stereo, bool last);
    /// Destroys the stream and the voices that play on it.
    void clear();

    /// Returns for how many frames the current voices will still play.
    std::int64_t framesLeft() const;
    /// Returns when the voices end unless the server requests frames before; none if there are
    /// no voices.
    std::optional<BootClock::time_point> deadline() const;
    /// Ends all voices if the deadline has passed.
    void endOverdue();

    bool exists() const { return stream_ != nullptr; }
    bool isQuiet() const { return state_ != State::feeding && state_ != State::draining; }

private:
    /// The stream is connected, kept fed, played to its end and corked, in this order.
    enum class State { connecting, feeding, draining, idle };

    bool isOverdue() const;
    void connect(pa_context& context);
    void feed();
    void onWanted(std::size_t frames);
    void mix(std::size_t frames);
    void drain();

    PulseConnection& connection_;
    VoiceParts& parts_;
    const std::function<void()> quiet_;
    std::unique_ptr<PulseStream> stream_;
    State state_ = State::connecting;
    BootClock::time_point progressed_;  // When the server last did something, or was asked to.
    OverflowMixer mixer_;
    std::vector<Voice> unfinished_;  // The voices that are still being decoded.
    std::vector<float> mixed_;
};

}  // namespace chimewerk
