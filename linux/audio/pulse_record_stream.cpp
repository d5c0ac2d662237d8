#include "linux/audio/pulse_record_stream.h"

#include <cstdint>
#include <utility>

namespace chimewerk {

namespace {

PulseRecordStream& self(void* user) {
    return *static_cast<PulseRecordStream*>(user);
}

// The server takes the first channel, by its number, and sends no other; PipeWire goes by the channel's name.
// A mono stream would get the average of all. With early requests the source is asked to deliver in the
// fragments' time and the fragments stay as they are; a source that is left to itself, or that may adjust
// them, delivers up to two seconds at a time. A stream that is not moved ends with its source, and it is
// chosen here which one is next: never a sink's monitor.
constexpr auto kFlags =
    static_cast<pa_stream_flags_t>(PA_STREAM_EARLY_REQUESTS | PA_STREAM_NO_REMAP_CHANNELS |
                                   PA_STREAM_NO_REMIX_CHANNELS | PA_STREAM_DONT_MOVE);

pa_stream* makeStream(pa_context& context, const MicrophoneSource& source) {
    const pa_sample_spec form{.format = PA_SAMPLE_FLOAT32NE, .rate = source.rate, .channels = 1};
    pa_channel_map channels{};
    channels.channels = 1;
    channels.map[0] = source.firstChannel;
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_NAME, "Knock detection");
    pa_stream* const stream =
        pa_stream_new_with_proplist(&context, nullptr, &form, &channels, properties);
    pa_proplist_free(properties);
    return stream;
}

}  // namespace

PulseRecordStream::PulseRecordStream(pa_context& context, const MicrophoneSource& source,
                                     std::size_t frames, Callbacks callbacks)
    : stream_(makeStream(context, source)), callbacks_(std::move(callbacks)) {
    if (stream_ == nullptr) {
        return;
    }
    pa_stream_set_state_callback(
        stream_, [](pa_stream*, void* user) { self(user).stateChanged(); }, this);
    pa_stream_set_read_callback(
        stream_, [](pa_stream*, std::size_t, void* user) { self(user).read(); }, this);
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{.maxlength = kServersChoice,
                                .tlength = kServersChoice,
                                .prebuf = kServersChoice,
                                .minreq = kServersChoice,
                                .fragsize = static_cast<std::uint32_t>(frames * sizeof(float))};
    pa_stream_connect_record(stream_, source.name.c_str(), &buffer, kFlags);
}

PulseRecordStream::~PulseRecordStream() {
    if (stream_ == nullptr) {
        return;
    }
    pa_stream_set_read_callback(stream_, nullptr, nullptr);
    // What the server is still making can only be ended when it is made.
    pa_stream_set_state_callback(
        stream_,
        [](pa_stream* stream, void*) {
            if (pa_stream_get_state(stream) == PA_STREAM_READY) {
                pa_stream_disconnect(stream);
            }
        },
        nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
}

void PulseRecordStream::stateChanged() {
    if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream_))) {
        callbacks_.ended();
    }
}

void PulseRecordStream::read() {
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_peek(stream_, &data, &bytes) == 0 && bytes > 0) {
        if (data != nullptr) {
            callbacks_.heard(std::span(static_cast<const float*>(data), bytes / sizeof(float)));
        } else {
            callbacks_.heard(std::nullopt);
        }
        pa_stream_drop(stream_);
    }
}

}  // namespace chimewerk
