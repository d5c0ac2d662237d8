#pragma once

#include <pulse/pulseaudio.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include "linux/audio/microphone_choice.h"

namespace chimewerk {

/// Records the first channel of one source of the sound server, at the source's rate. Everything happens
/// under the lock of the connection, and so do the callbacks.
class PulseRecordStream {
public:
    struct Callbacks {
        /// These samples have come, in pieces of up to the length that was asked for; none in the place of
        /// samples that the server has lost.
        std::function<void(std::optional<std::span<const float>>)> heard;
        /// The stream has ended for good, at the server's command, or could not be made; the callback may
        /// destroy it.
        std::function<void()> ended;
    };

    /// Asks the server for a stream that delivers every `frames` frames.
    PulseRecordStream(pa_context& context, const MicrophoneSource& source, std::size_t frames,
                      Callbacks callbacks);
    PulseRecordStream(const PulseRecordStream&) = delete;
    PulseRecordStream& operator=(const PulseRecordStream&) = delete;
    ~PulseRecordStream();

private:
    void stateChanged();
    void read();

    pa_stream* stream_;
    Callbacks callbacks_;
};

}  // namespace chimewerk
