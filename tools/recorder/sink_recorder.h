#pragma once

#include <pulse/pulseaudio.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "tools/recorder/recording.h"

namespace chimewerk {

/// Records what a sink of the sound server plays, by way of the sink's monitor, and tells when it was played.
///
/// Times are those of the sink: a frame's time is the moment at which the sink plays it. With a sink without
/// hardware they are right within a millisecond on a quiet machine, but for one thing: a player that starts
/// while the sink has rendered a block of silence ahead can replace it in the sink, no longer in the
/// recording; its first few milliseconds, at most a block of 5 ms, are then missing, and its start seems that
/// much later. The recorder asks the sink for blocks of 5 ms; a player that would have been content with
/// longer ones is served as quickly while the recorder runs.
///
/// All functions may be called from one thread, which need not be the one that made the recorder.
class SinkRecorder {
public:
    enum class Suspending {
        /// The sink keeps running for the recorder.
        Prevented,
        /// The sink may suspend when only the recorder listens; nothing is recorded meanwhile.
        Allowed
    };

    explicit SinkRecorder(std::string sink = "speaker",
                          Suspending suspending = Suspending::Prevented);
    SinkRecorder(const SinkRecorder&) = delete;
    SinkRecorder& operator=(const SinkRecorder&) = delete;
    ~SinkRecorder();

    /// Connects and waits until what arrives is live, for some tenths of a second. A sink without players may
    /// have rendered two seconds ahead; it is suspended for a moment to make it forget them. False when that
    /// fails or takes longer than `timeout`. Starting again, after the server dropped the recorder or not,
    /// continues the recording after a pause.
    [[nodiscard]] bool start(std::chrono::milliseconds timeout = std::chrono::seconds(10));
    void stop();
    /// False before `start()`, after `stop()` and as soon as the server has dropped the recorder or taken
    /// away the sink.
    bool isRecording() const;

    /// Waits until everything played before `time` is recorded; false when that takes longer than `timeout`,
    /// or the server drops the recorder.
    [[nodiscard]] bool waitUntilRecorded(
        SteadyTime time, std::chrono::milliseconds timeout = std::chrono::seconds(5)) const;
    /// Waits for a sound as `firstSoundAfter()` finds it, at most until everything played before `deadline`
    /// is recorded.
    std::optional<SteadyTime> waitForSound(SteadyTime after, float threshold,
                                           SteadyTime deadline) const;

    // See Recording.
    std::optional<SteadyTime> firstSoundAfter(SteadyTime time, float threshold) const;
    float peakBetween(SteadyTime begin, SteadyTime end) const;
    std::vector<float> samples() const;
    [[nodiscard]] bool writeWav(const std::filesystem::path& path) const;

private:
    enum class State { Stopped, Connecting, Live, Dropped };

    // These run on the client library's thread.
    void contextChanged();
    void connectStream();
    void streamChanged();
    void forgetRenderedAhead();
    void resumed();
    void suspendedChanged();
    void readAll();
    void blockArrived(const float* samples, std::size_t count, SteadyTime arrival);
    void setState(State state);

    struct MainloopDeleter {
        void operator()(pa_threaded_mainloop* mainloop) const {
            pa_threaded_mainloop_free(mainloop);
        }
    };
    struct ContextDeleter {
        void operator()(pa_context* context) const { pa_context_unref(context); }
    };
    struct StreamDeleter {
        void operator()(pa_stream* stream) const { pa_stream_unref(stream); }
    };

    const std::string sink_;
    const Suspending suspending_;

    // The library's thread runs between pa_threaded_mainloop_start and _stop and has these to itself
    // meanwhile. In this order the mainloop outlives its users.
    std::unique_ptr<pa_threaded_mainloop, MainloopDeleter> mainloop_;
    std::unique_ptr<pa_context, ContextDeleter> context_;
    std::unique_ptr<pa_stream, StreamDeleter> stream_;
    LivePace pace_{Recording::kRate};

    mutable std::mutex lock_;
    mutable std::condition_variable changed_;
    State state_ = State::Stopped;  // guarded by lock_
    Recording recording_;           // guarded by lock_
};

}  // namespace chimewerk
