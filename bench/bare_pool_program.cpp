// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The smallest program that clicks at each key press: it keeps the click in memory and plays it on
// one of three streams that are connected beforehand and corked. A yardstick for speed and cost.
// The argument is the streams' latency in milliseconds.
#include <pulse/pulseaudio.h>
#include <xcb/xinput.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

constexpr pa_sample_spec kForm{.format = PA_SAMPLE_FLOAT32LE, .rate = 48000, .channels = 2};
constexpr std::size_t kFrameSize = 2 * sizeof(float);
constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);

/// A click of 30 ms, loud from its first frame.
std::vector<float> click() {
    std::vector<float> stereo(std::size_t{2} * 1440);
    for (std::size_t i = 0; i < stereo.size(); ++i) {
        stereo[i] = 0.3F * std::exp(-static_cast<float>(i) / 800.0F);
    }
    return stereo;
}

class Pool {
public:
    explicit Pool(unsigned latencyMilliseconds) : latencyMilliseconds_(latencyMilliseconds) {
        pa_context_set_state_callback(
            context_,
            [](pa_context* context, void* pool) {
                if (pa_context_get_state(context) == PA_CONTEXT_READY) {
                    static_cast<Pool*>(pool)->connect();
                }
            },
            this);
        pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
        pa_threaded_mainloop_start(loop_);
    }

    void play() {
        pa_threaded_mainloop_lock(loop_);
        pa_stream* const stream = streams_[next_++ % streams_.size()];
        if (stream != nullptr && pa_stream_get_state(stream) == PA_STREAM_READY) {
            pa_stream_write(stream, click_.data(), click_.size() * sizeof(float), nullptr, 0,
                            PA_SEEK_RELATIVE);
            pa_operation_unref(pa_stream_cork(stream, 0, nullptr, nullptr));
            pa_operation_unref(pa_stream_drain(
                stream,
                [](pa_stream* drained, int /*success*/, void* /*user*/) {
                    pa_operation_unref(pa_stream_cork(drained, 1, nullptr, nullptr));
                },
                nullptr));
        }
        pa_threaded_mainloop_unlock(loop_);
    }

private:
    void connect() {
        const auto latency =
            static_cast<std::uint32_t>(pa_usec_to_bytes(latencyMilliseconds_ * 1000UL, &kForm));
        const pa_buffer_attr buffer{kServersChoice, latency, kFrameSize, kServersChoice,
                                    kServersChoice};
        constexpr auto kFlags =
            static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY);
        for (pa_stream*& stream : streams_) {
            stream = pa_stream_new(context_, "click", &kForm, nullptr);
            pa_stream_connect_playback(stream, nullptr, &buffer, kFlags, nullptr, nullptr);
        }
    }

    const unsigned latencyMilliseconds_;
    const std::vector<float> click_ = click();
    pa_threaded_mainloop* const loop_ = pa_threaded_mainloop_new();
    pa_context* const context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "bare pool");
    std::array<pa_stream*, 3> streams_{};
    std::size_t next_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
    const xcb_setup_t* const setup = xcb_get_setup(server);
    if (xcb_connection_has_error(server) != 0 || setup == nullptr) {
        return 1;
    }
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const wanted{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS};
    std::free(xcb_input_xi_query_version_reply(server, xcb_input_xi_query_version(server, 2, 1),
                                               nullptr));
    xcb_input_xi_select_events(server, xcb_setup_roots_iterator(setup).data->root, 1, &wanted.head);
    xcb_flush(server);
    Pool pool(argc > 1 ? static_cast<unsigned>(std::atoi(argv[1])) : 10);
    while (void* const event = xcb_wait_for_event(server)) {
        pool.play();
        std::free(event);
    }
    return 0;
}
