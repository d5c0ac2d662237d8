#include "linux/audio/pulse_stream.h"

#include <utility>

#include "linux/decoding/pcm_reader.h"

namespace chimewerk {

namespace {

constexpr pa_sample_spec kForm{
    .format = PA_SAMPLE_FLOAT32LE, .rate = kOutputRate, .channels = kOutputChannels};
constexpr std::size_t kFrameSize = sizeof(float) * kOutputChannels;

PulseStream& self(void* user) {
    return *static_cast<PulseStream*>(user);
}

/// For requests whose outcome shows in other ways.
void forget(pa_operation* operation) {
    if (operation != nullptr) {
        pa_operation_unref(operation);
    }
}

}  // namespace

PulseStream::PulseStream(pa_context& context, unsigned latencyMilliseconds, Callbacks callbacks)
    : callbacks_(std::move(callbacks)) {
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "event");
    pa_proplist_sets(properties, PA_PROP_MEDIA_NAME, "Event sound");
    stream_ = pa_stream_new_with_proplist(&context, nullptr, &kForm, nullptr, properties);
    pa_proplist_free(properties);
    if (stream_ == nullptr) {
        return;
    }
    pa_stream_set_state_callback(
        stream_, [](pa_stream*, void* user) { self(user).stateChanged(); }, this);
    if (callbacks_.wanted) {
        pa_stream_set_write_callback(
            stream_,
            [](pa_stream*, std::size_t bytes, void* user) {
                self(user).callbacks_.wanted(bytes / kFrameSize);
            },
            this);
    }
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    const auto latency = static_cast<std::uint32_t>(
        pa_usec_to_bytes(latencyMilliseconds * PA_USEC_PER_MSEC, &kForm));
    // Playing begins with the first frame that is there. Not with none at all, which `prebuf` 0 would mean:
    // the server would then never count the stream as run dry, would play silence in its stead and never call
    // it drained.
    const pa_buffer_attr buffer{.maxlength = kServersChoice,
                                .tlength = latency,
                                .prebuf = kFrameSize,
                                .minreq = kServersChoice,
                                .fragsize = kServersChoice};
    pa_stream_connect_playback(
        stream_, nullptr, &buffer,
        static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY), nullptr,
        nullptr);
}

PulseStream::~PulseStream() {
    if (stream_ == nullptr) {
        return;
    }
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_write_callback(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
}

void PulseStream::stateChanged() {
    switch (pa_stream_get_state(stream_)) {
        case PA_STREAM_READY:
            callbacks_.ready();
            break;
        case PA_STREAM_FAILED:
        case PA_STREAM_TERMINATED:
            callbacks_.failed();
            break;
        default:
            break;
    }
}

std::size_t PulseStream::wantedFrames() const {
    const std::size_t bytes = pa_stream_writable_size(stream_);
    return bytes == static_cast<std::size_t>(-1) ? 0 : bytes / kFrameSize;
}

void PulseStream::write(std::span<const float> stereo) {
    draining_.reset(nullptr);
    pa_stream_write(stream_, stereo.data(), stereo.size_bytes(), nullptr, 0, PA_SEEK_RELATIVE);
}

void PulseStream::uncork() {
    forget(pa_stream_cork(stream_, 0, nullptr, nullptr));
}

void PulseStream::corkAndFlush() {
    draining_.reset(nullptr);
    asking_.reset(nullptr);
    forget(pa_stream_cork(stream_, 1, nullptr, nullptr));
    forget(pa_stream_flush(stream_, nullptr, nullptr));
}

void PulseStream::drain(std::function<void()> drained) {
    drained_ = std::move(drained);
    draining_.reset(pa_stream_drain(
        stream_,
        [](pa_stream*, int success, void* user) {
            if (success != 0) {
                const auto done = std::move(self(user).drained_);
                done();
            }
        },
        this));
}

void PulseStream::askQueued(std::function<void(std::optional<std::int64_t> frames)> answer) {
    queuedAnswer_ = std::move(answer);
    asking_.reset(pa_stream_update_timing_info(
        stream_,
        [](pa_stream* stream, int success, void* user) {
            const pa_timing_info* const timing =
                success != 0 ? pa_stream_get_timing_info(stream) : nullptr;
            std::optional<std::int64_t> frames;
            if (timing != nullptr && timing->write_index_corrupt == 0 &&
                timing->read_index_corrupt == 0) {
                frames = (timing->write_index - timing->read_index) /
                         static_cast<std::int64_t>(kFrameSize);
            }
            const auto answerTo = std::move(self(user).queuedAnswer_);
            answerTo(frames);
        },
        this));
}

}  // namespace chimewerk
