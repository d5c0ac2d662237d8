// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/microphone/pulse_record_stream.h"

#include <cstdint>
#include <utility>

namespace chimewerk {

namespace {

PulseRecordStream& self(void* user) {
    return *static_cast<PulseRecordStream*>(user);
}

// Without remapping and remixing, the server sends the first channel only, by its number; PipeWire
// goes by the channel's name. A plain mono stream would get the average of all channels. With early
// requests the source delivers fragments of the requested length; otherwise, or if it may adjust
// them, it delivers up to two seconds at a time. A stream that is not moved ends with its source;
// the program then chooses the next source itself, and never a sink's monitor.
constexpr auto kFlags =
    static_cast<pa_stream_flags_t>(PA_STREAM_EARLY_REQUESTS | PA_STREAM_NO_REMAP_CHANNELS |
                                   PA_STREAM_NO_REMIX_CHANNELS | PA_STREAM_DONT_MOVE);

}  // namespace

PulseRecordStream::PulseRecordStream(PulseConnection& connection, pa_context& context,
                                     const MicrophoneSource& source, std::size_t frames,
                                     Callbacks callbacks)
    : callbacks_(std::move(callbacks)) {
    if (!connect(context, source, frames)) {
        ending_ = connection.after(std::chrono::milliseconds(0), [this] { end(); });
    }
}

bool PulseRecordStream::connect(pa_context& context, const MicrophoneSource& source,
                                std::size_t frames) {
    const pa_sample_spec form{.format = PA_SAMPLE_FLOAT32NE, .rate = source.rate, .channels = 1};
    pa_channel_map channels{};
    channels.channels = 1;
    channels.map[0] = source.firstChannel;
    const PulseHandle<pa_proplist> properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_MEDIA_NAME, "Knock detection");
    stream_.reset(
        pa_stream_new_with_proplist(&context, nullptr, &form, &channels, properties.get()));
    if (!stream_) {
        return false;
    }
    pa_stream_set_state_callback(
        stream_.get(), [](pa_stream*, void* user) { self(user).onStateChange(); }, this);
    pa_stream_set_read_callback(
        stream_.get(), [](pa_stream*, std::size_t, void* user) { self(user).read(); }, this);
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{.maxlength = kServersChoice,
                                .tlength = kServersChoice,
                                .prebuf = kServersChoice,
                                .minreq = kServersChoice,
                                .fragsize = static_cast<std::uint32_t>(frames * sizeof(float))};
    return pa_stream_connect_record(stream_.get(), source.name.c_str(), &buffer, kFlags) == 0;
}

PulseRecordStream::~PulseRecordStream() {
    if (!stream_) {
        return;
    }
    pa_stream_set_read_callback(stream_.get(), nullptr, nullptr);
    // A stream that is still being created can only be disconnected once it is ready.
    pa_stream_set_state_callback(
        stream_.get(),
        [](pa_stream* stream, void*) {
            if (pa_stream_get_state(stream) == PA_STREAM_READY) {
                pa_stream_disconnect(stream);
            }
        },
        nullptr);
    pa_stream_disconnect(stream_.get());
}

void PulseRecordStream::onStateChange() {
    if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream_.get()))) {
        end();
    }
}

void PulseRecordStream::end() {
    // The callback may destroy this stream, so it is moved out first.
    if (const auto ended = std::exchange(callbacks_.ended, nullptr)) {
        ended();
    }
}

void PulseRecordStream::read() {
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_peek(stream_.get(), &data, &bytes) == 0 && bytes > 0) {
        if (data != nullptr) {
            callbacks_.heard(std::span(static_cast<const float*>(data), bytes / sizeof(float)));
        } else {
            callbacks_.heard(std::nullopt);
        }
        pa_stream_drop(stream_.get());
    }
}

}  // namespace chimewerk
