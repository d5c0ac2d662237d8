// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/pulse_stream.h"

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

std::uint32_t bytesOf(unsigned milliseconds) {
    return static_cast<std::uint32_t>(pa_usec_to_bytes(milliseconds * PA_USEC_PER_MSEC, &kForm));
}

/// Releases a request whose result is not needed.
void forget(pa_operation* operation) {
    const PulseHandle<pa_operation> released(operation);
}

}  // namespace

PulseStream::PulseStream(PulseConnection& connection, pa_context& context, Buffering buffering,
                         Callbacks callbacks)
    : callbacks_(std::move(callbacks)) {
    if (!connect(context, buffering)) {
        failing_ = connection.after(std::chrono::milliseconds(0), [this] { fail(); });
    }
}

bool PulseStream::connect(pa_context& context, Buffering buffering) {
    const PulseHandle<pa_proplist> properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_MEDIA_ROLE, "event");
    pa_proplist_sets(properties.get(), PA_PROP_MEDIA_NAME, "Event sound");
    stream_.reset(
        pa_stream_new_with_proplist(&context, nullptr, &kForm, nullptr, properties.get()));
    if (!stream_) {
        return false;
    }
    pa_stream_set_state_callback(
        stream_.get(), [](pa_stream*, void* user) { self(user).onStateChange(); }, this);
    if (callbacks_.started) {
        pa_stream_set_started_callback(
            stream_.get(), [](pa_stream*, void* user) { self(user).callbacks_.started(); }, this);
    }
    if (callbacks_.wanted) {
        pa_stream_set_write_callback(
            stream_.get(),
            [](pa_stream*, std::size_t bytes, void* user) {
                self(user).callbacks_.wanted(bytes / kFrameSize);
            },
            this);
    }
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    // Playing starts with the first frame. A pre-buffer of 0 would start as fast, but the server
    // would never consider the stream empty: it would play silence and never report that the stream
    // has drained.
    const pa_buffer_attr buffer{.maxlength = kServersChoice,
                                .tlength = bytesOf(buffering.milliseconds),
                                .prebuf = kFrameSize,
                                .minreq = bytesOf(buffering.requestMilliseconds),
                                .fragsize = kServersChoice};
    constexpr auto kFlags =
        static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY);
    return pa_stream_connect_playback(stream_.get(), nullptr, &buffer, kFlags, nullptr, nullptr) ==
           0;
}

PulseStream::~PulseStream() {
    if (stream_) {
        pa_stream_set_state_callback(stream_.get(), nullptr, nullptr);
        pa_stream_set_started_callback(stream_.get(), nullptr, nullptr);
        pa_stream_set_write_callback(stream_.get(), nullptr, nullptr);
        pa_stream_disconnect(stream_.get());
    }
}

void PulseStream::onStateChange() {
    switch (pa_stream_get_state(stream_.get())) {
        case PA_STREAM_READY:
            callbacks_.ready();
            break;
        case PA_STREAM_FAILED:
        case PA_STREAM_TERMINATED:
            fail();
            break;
        default:
            break;
    }
}

void PulseStream::fail() {
    // The callback may destroy this stream, so it is moved out first.
    if (const auto failed = std::exchange(callbacks_.failed, nullptr)) {
        failed();
    }
}

std::size_t PulseStream::wantedFrames() const {
    const std::size_t bytes = pa_stream_writable_size(stream_.get());
    return bytes == static_cast<std::size_t>(-1) ? 0 : bytes / kFrameSize;
}

void PulseStream::write(std::span<const float> stereo, std::size_t rewind) {
    if (rewind == 0) {
        draining_.reset(nullptr);
    }
    pa_stream_write(stream_.get(), stereo.data(), stereo.size_bytes(), nullptr,
                    -static_cast<std::int64_t>(rewind * kFrameSize), PA_SEEK_RELATIVE);
}

void PulseStream::uncork() {
    forget(pa_stream_cork(stream_.get(), 0, nullptr, nullptr));
}

void PulseStream::cork() {
    draining_.reset(nullptr);
    asking_.reset(nullptr);
    forget(pa_stream_cork(stream_.get(), 1, nullptr, nullptr));
}

void PulseStream::drain(std::function<void()> drained) {
    drained_ = std::move(drained);
    draining_.reset(pa_stream_drain(
        stream_.get(),
        [](pa_stream*, int success, void* user) {
            if (success != 0) {
                const auto done = std::move(self(user).drained_);
                done();
            }
        },
        this));
}

void PulseStream::askQueued(std::function<void(std::optional<Queued>)> answer) {
    queuedAnswer_ = std::move(answer);
    asking_.reset(pa_stream_update_timing_info(
        stream_.get(),
        [](pa_stream* stream, int success, void* user) {
            const pa_timing_info* const timing =
                success != 0 ? pa_stream_get_timing_info(stream) : nullptr;
            std::optional<Queued> queued;
            if (timing != nullptr && timing->write_index_corrupt == 0 &&
                timing->read_index_corrupt == 0) {
                queued = {.frames = (timing->write_index - timing->read_index) /
                                    static_cast<std::int64_t>(kFrameSize),
                          .age = std::chrono::microseconds(pa_timeval_age(&timing->timestamp))};
            }
            const auto answerTo = std::move(self(user).queuedAnswer_);
            answerTo(queued);
        },
        this));
}

}  // namespace chimewerk
