// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "linux/audio/pulse_connection.h"
#include "linux/microphone/microphone_choice.h"

namespace chimewerk {

/// Records the first channel of one source of the audio server, at the source's rate. Used, and
/// destroyed, under the connection's lock; the callbacks are called under it too, but never by
/// the constructor.
class PulseRecordStream {
public:
    struct Callbacks {
        /// Called with the next samples, at most as many as requested; none stands for samples that
        /// the server has lost.
        std::function<void(std::optional<std::span<const float>>)> heard;
        /// Called when the stream has ended for good: the server ended it, or it could not be made.
        /// May destroy the stream.
        std::function<void()> ended;
    };

    /// Requests a stream that delivers `frames` frames at a time.
    PulseRecordStream(PulseConnection& connection, pa_context& context,
                      const MicrophoneSource& source, std::size_t frames, Callbacks callbacks);
    PulseRecordStream(const PulseRecordStream&) = delete;
    PulseRecordStream& operator=(const PulseRecordStream&) = delete;
    ~PulseRecordStream();

private:
    bool connect(pa_context& context, const MicrophoneSource& source, std::size_t frames);
    void onStateChange();
    void read();
    void end();

    Callbacks callbacks_;
    PulseHandle<pa_stream> stream_;  // Null if it could not be made.
    std::unique_ptr<PulseConnection::Alarm> ending_;
};

}  // namespace chimewerk
