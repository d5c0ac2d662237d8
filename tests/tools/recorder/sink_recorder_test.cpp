#include "tools/recorder/sink_recorder.h"

#include <gtest/gtest.h>
#include <pulse/pulseaudio.h>

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace chimewerk {
namespace {

using namespace std::chrono_literals;

void shell(const std::string& command) {
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

/// Plays one click and tells when the server says that it played it.
class ClickPlayer {
public:
    ClickPlayer() : mainloop_(pa_threaded_mainloop_new()) {
        context_ = pa_context_new(pa_threaded_mainloop_get_api(mainloop_), "click");
        pa_context_set_state_callback(
            context_, [](pa_context*, void* self) { static_cast<ClickPlayer*>(self)->signal(); },
            this);
        pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
        pa_threaded_mainloop_start(mainloop_);
        const Locked locked(*this);
        while (pa_context_get_state(context_) != PA_CONTEXT_READY) {
            pa_threaded_mainloop_wait(mainloop_);
        }
    }
    ClickPlayer(const ClickPlayer&) = delete;
    ClickPlayer& operator=(const ClickPlayer&) = delete;
    ~ClickPlayer() {
        pa_threaded_mainloop_stop(mainloop_);
        pa_context_disconnect(context_);
        if (stream_ != nullptr) {
            pa_stream_unref(stream_);
        }
        pa_context_unref(context_);
        pa_threaded_mainloop_free(mainloop_);
    }

    /// Half a second of silence, then a click of this level, then silence again.
    void start(float level) {
        std::vector<float> samples(kRate);
        samples[kClick] = level;
        const Locked locked(*this);
        const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, kRate, 1};
        stream_ = pa_stream_new(context_, "click", &format, nullptr);
        pa_stream_set_state_callback(
            stream_, [](pa_stream*, void* self) { static_cast<ClickPlayer*>(self)->signal(); },
            this);
        const auto flags = PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE;
        pa_stream_connect_playback(stream_, nullptr, nullptr, static_cast<pa_stream_flags_t>(flags),
                                   nullptr, nullptr);
        while (pa_stream_get_state(stream_) != PA_STREAM_READY) {
            pa_threaded_mainloop_wait(mainloop_);
        }
        pa_stream_write(stream_, samples.data(), samples.size() * sizeof(float), nullptr, 0,
                        PA_SEEK_RELATIVE);
        pa_operation_unref(pa_stream_trigger(stream_, nullptr, nullptr));
    }

    /// The moment of the click by the server's account of how far the stream has been played.
    SteadyTime clickTime() {
        const Locked locked(*this);
        pa_operation* update = pa_stream_update_timing_info(
            stream_, [](pa_stream*, int, void* self) { static_cast<ClickPlayer*>(self)->signal(); },
            this);
        while (pa_operation_get_state(update) == PA_OPERATION_RUNNING) {
            pa_threaded_mainloop_wait(mainloop_);
        }
        pa_operation_unref(update);
        pa_usec_t played = 0;
        pa_stream_get_time(stream_, &played);
        return std::chrono::steady_clock::now() + std::chrono::milliseconds(1000 * kClick / kRate) -
               std::chrono::microseconds(played);
    }

private:
    static constexpr int kRate = 48000;
    static constexpr int kClick = kRate / 2;

    struct Locked {
        explicit Locked(ClickPlayer& player) : mainloop(player.mainloop_) {
            pa_threaded_mainloop_lock(mainloop);
        }
        Locked(const Locked&) = delete;
        Locked& operator=(const Locked&) = delete;
        ~Locked() { pa_threaded_mainloop_unlock(mainloop); }
        pa_threaded_mainloop* mainloop;
    };
    void signal() { pa_threaded_mainloop_signal(mainloop_, 0); }

    pa_threaded_mainloop* mainloop_;
    pa_context* context_ = nullptr;
    pa_stream* stream_ = nullptr;
};

TEST(TheSinkRecorder, PlacesAClickWhereTheServerSaysThatItWasPlayed) {
    SinkRecorder recorder;
    ASSERT_TRUE(recorder.start());
    ClickPlayer player;
    const SteadyTime before = std::chrono::steady_clock::now();
    player.start(0.75F);
    const auto heard = recorder.waitForSound(before, 0.1F, before + 3s);
    ASSERT_TRUE(heard);
    const SteadyTime said = player.clickTime();
    const double difference = std::chrono::duration<double, std::milli>(*heard - said).count();
    std::cout << "heard " << difference << " ms after the server's account\n";
    EXPECT_LT(std::fabs(difference), 10.0);
    EXPECT_FLOAT_EQ(recorder.peakBetween(*heard - 100ms, *heard + 100ms), 0.75F);
    EXPECT_EQ(recorder.peakBetween(*heard - 400ms, *heard - 1ms), 0.0F);
}

TEST(TheSinkRecorder, NoticesThatTheServerDiedAndGoesOnWithTheNext) {
    SinkRecorder recorder;
    EXPECT_FALSE(recorder.isRecording());
    ASSERT_TRUE(recorder.start());
    shell("kill -KILL $(cat $PULSE_RUNTIME_PATH/pid)");
    EXPECT_FALSE(recorder.waitUntilRecorded(std::chrono::steady_clock::now() + 1h, 10s));
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(recorder.start()) << "there is no server";

    shell("$CHIMEWERK_START_PULSEAUDIO");
    ASSERT_TRUE(recorder.start());
    EXPECT_TRUE(recorder.isRecording());
    const SteadyTime now = std::chrono::steady_clock::now();
    ClickPlayer player;
    player.start(0.5F);
    EXPECT_TRUE(recorder.waitForSound(now, 0.1F, now + 3s));
}

TEST(TheSinkRecorder, EndsWithItsSink) {
    shell("pactl load-module module-null-sink sink_name=passing >$CHIMEWERK_SESSION/passing");
    SinkRecorder recorder("passing");
    ASSERT_TRUE(recorder.start());
    shell("pactl unload-module $(cat $CHIMEWERK_SESSION/passing)");
    EXPECT_FALSE(recorder.waitUntilRecorded(std::chrono::steady_clock::now() + 1h, 10s));
    EXPECT_FALSE(recorder.isRecording());
}

TEST(TheSinkRecorder, LetsTheSinkSuspendWhenAskedTo) {
    SinkRecorder recorder("speaker", SinkRecorder::Suspending::Allowed);
    ASSERT_TRUE(recorder.start());
    shell(
        "timeout 10 sh -c 'until pactl list short sinks | grep -q SUSPENDED; do sleep 0.1; done'");
    const SteadyTime now = std::chrono::steady_clock::now();
    ClickPlayer player;
    player.start(0.5F);
    const auto heard = recorder.waitForSound(now, 0.1F, now + 3s);
    ASSERT_TRUE(heard);
    EXPECT_LT(std::fabs(std::chrono::duration<double>(*heard - player.clickTime()).count()), 0.01);
}

}  // namespace
}  // namespace chimewerk
