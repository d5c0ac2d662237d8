// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/recorder/sink_recorder.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace chimewerk {

using namespace std::chrono_literals;

namespace {

constexpr pa_sample_spec kFormat{PA_SAMPLE_FLOAT32NE, Recording::kRate, Recording::kChannels};
constexpr std::size_t kFrameBytes = sizeof(float) * Recording::kChannels;
constexpr std::uint32_t kBlockBytes = Recording::kRate / 200 * kFrameBytes;

}  // namespace

SinkRecorder::SinkRecorder(std::string sink, Suspending suspending)
    : sink_(std::move(sink)), suspending_(suspending) {}

SinkRecorder::~SinkRecorder() {
    stop();
}

bool SinkRecorder::start(std::chrono::milliseconds timeout) {
    stop();
    {
        const std::lock_guard guard(lock_);
        state_ = State::Connecting;
        recording_.pause();
    }
    pace_ = LivePace{Recording::kRate};
    mainloop_.reset(pa_threaded_mainloop_new());
    context_.reset(pa_context_new(pa_threaded_mainloop_get_api(mainloop_.get()), "sink recorder"));
    pa_context_set_state_callback(
        context_.get(),
        [](pa_context*, void* self) { static_cast<SinkRecorder*>(self)->contextChanged(); }, this);
    if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 ||
        pa_threaded_mainloop_start(mainloop_.get()) < 0) {
        stop();
        return false;
    }
    std::unique_lock guard(lock_);
    changed_.wait_for(guard, timeout, [&] { return state_ != State::Connecting; });
    return state_ == State::Live;
}

void SinkRecorder::stop() {
    if (mainloop_) {
        pa_threaded_mainloop_stop(mainloop_.get());
        // Calls the stream's state callback, so the stream is released after it.
        pa_context_disconnect(context_.get());
        stream_.reset();
        context_.reset();
        mainloop_.reset();
    }
    const std::lock_guard guard(lock_);
    state_ = State::Stopped;
}

void SinkRecorder::contextChanged() {
    switch (pa_context_get_state(context_.get())) {
        case PA_CONTEXT_READY:
            pa_operation_unref(pa_context_get_server_info(
                context_.get(),
                [](pa_context*, const pa_server_info* server, void* self) {
                    static_cast<SinkRecorder*>(self)->serverKnown(server);
                },
                this));
            break;
        case PA_CONTEXT_FAILED:
        case PA_CONTEXT_TERMINATED:
            setState(State::Dropped);
            break;
        default:
            break;
    }
}

void SinkRecorder::serverKnown(const pa_server_info* server) {
    // PipeWire renders nothing ahead. It has no call that resumes a sink, so a suspended sink may
    // stay suspended beside a stream that records from it.
    rendersAhead_ = server == nullptr ||
                    std::string_view(server->server_name).find("PipeWire") == std::string::npos;
    connectStream();
    if (!rendersAhead_ && suspending_ == Suspending::Allowed) {
        // The stream becomes ready, and live, when the sink resumes.
        setState(State::Live);
    }
}

void SinkRecorder::connectStream() {
    const bool mayPause = suspending_ == Suspending::Allowed;
    const std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)> properties(pa_proplist_new(),
                                                                               &pa_proplist_free);
    // PipeWire knows the flag below by this name only.
    pa_proplist_sets(properties.get(), "node.passive", mayPause ? "true" : "false");
    stream_.reset(pa_stream_new_with_proplist(context_.get(), "recording", &kFormat, nullptr,
                                              properties.get()));
    pa_stream_set_state_callback(
        stream_.get(),
        [](pa_stream*, void* self) { static_cast<SinkRecorder*>(self)->streamChanged(); }, this);
    pa_stream_set_suspended_callback(
        stream_.get(),
        [](pa_stream*, void* self) { static_cast<SinkRecorder*>(self)->suspendedChanged(); }, this);
    pa_stream_set_read_callback(
        stream_.get(),
        [](pa_stream*, std::size_t, void* self) { static_cast<SinkRecorder*>(self)->readAll(); },
        this);
    constexpr auto kServerChooses = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{kServerChooses, kServerChooses, kServerChooses, kServerChooses,
                                kBlockBytes};
    unsigned flags = PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE;
    if (mayPause) {
        flags |= PA_STREAM_DONT_INHIBIT_AUTO_SUSPEND;
    }
    const std::string source = sink_ + ".monitor";
    if (pa_stream_connect_record(stream_.get(), source.c_str(), &buffer,
                                 static_cast<pa_stream_flags_t>(flags)) < 0) {
        setState(State::Dropped);
    }
}

void SinkRecorder::streamChanged() {
    const pa_stream_state_t state = pa_stream_get_state(stream_.get());
    if (state == PA_STREAM_READY) {
        if (rendersAhead_) {
            dropRenderedAhead();
        }
    } else if (!PA_STREAM_IS_GOOD(state)) {
        setState(State::Dropped);
    }
}

void SinkRecorder::dropRenderedAhead() {
    const auto resumed = [](pa_context*, int, void* self) {
        static_cast<SinkRecorder*>(self)->resumed();
    };
    const char* sink = sink_.c_str();
    pa_operation_unref(pa_context_suspend_sink_by_name(context_.get(), sink, 1, nullptr, nullptr));
    pa_operation_unref(pa_context_suspend_sink_by_name(context_.get(), sink, 0, resumed, this));
}

void SinkRecorder::resumed() {
    // A sink that was suspended for lack of players stays suspended. It will be live when
    // it resumes.
    if (pa_stream_is_suspended(stream_.get()) > 0) {
        setState(State::Live);
    }
}

void SinkRecorder::suspendedChanged() {
    const std::lock_guard guard(lock_);
    recording_.pause();
}

void SinkRecorder::readAll() {
    const SteadyTime arrival = std::chrono::steady_clock::now();
    const void* data = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_peek(stream_.get(), &data, &bytes) == 0 && bytes > 0) {
        blockArrived(static_cast<const float*>(data), bytes / sizeof(float), arrival);
        pa_stream_drop(stream_.get());
    }
    changed_.notify_all();
}

void SinkRecorder::blockArrived(const float* samples, std::size_t count, SteadyTime arrival) {
    const std::lock_guard guard(lock_);
    if (state_ == State::Live) {
        if (samples != nullptr) {
            recording_.append({samples, count}, arrival);
        } else {
            // A hole in the server's buffer: silence for as long as the missing samples.
            recording_.append(std::vector<float>(count), arrival);
        }
    } else if (pace_.blockArrived(count / Recording::kChannels, arrival)) {
        state_ = State::Live;
    }
}

void SinkRecorder::setState(State state) {
    const std::lock_guard guard(lock_);
    state_ = state;
    changed_.notify_all();
}

bool SinkRecorder::isRecording() const {
    const std::lock_guard guard(lock_);
    return state_ == State::Live;
}

bool SinkRecorder::waitUntilRecorded(SteadyTime time, std::chrono::milliseconds timeout) const {
    std::unique_lock guard(lock_);
    const auto reached = [&] {
        const auto end = recording_.end();
        return end && *end >= time;
    };
    changed_.wait_for(guard, timeout, [&] { return reached() || state_ != State::Live; });
    return reached();
}

std::optional<SteadyTime> SinkRecorder::waitForSound(SteadyTime after, float threshold,
                                                     SteadyTime deadline) const {
    // Samples arrive late: by a block, or more on a busy machine.
    constexpr auto kGrace = 500ms;
    std::unique_lock guard(lock_);
    std::optional<SteadyTime> sound;
    changed_.wait_until(guard, deadline + kGrace, [&] {
        sound = recording_.firstSoundAfter(after, threshold);
        const auto end = recording_.end();
        return sound || state_ != State::Live || (end && *end >= deadline);
    });
    return sound && *sound < deadline ? sound : std::nullopt;
}

std::optional<SteadyTime> SinkRecorder::firstSoundAfter(SteadyTime time, float threshold) const {
    const std::lock_guard guard(lock_);
    return recording_.firstSoundAfter(time, threshold);
}

float SinkRecorder::peakBetween(SteadyTime begin, SteadyTime end) const {
    const std::lock_guard guard(lock_);
    return recording_.peakBetween(begin, end);
}

std::vector<float> SinkRecorder::samples() const {
    const std::lock_guard guard(lock_);
    return recording_.samples();
}

bool SinkRecorder::writeWav(const std::filesystem::path& path) const {
    const std::lock_guard guard(lock_);
    return recording_.writeWav(path);
}

}  // namespace chimewerk
