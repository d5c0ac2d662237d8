// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

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

/// Records what a sink of the audio server plays, through the sink's monitor, with the times at
/// which it was played.
///
/// A frame's time is the moment at which the sink plays it. With a sink without hardware it is
/// right within a millisecond on a quiet machine, except in one case: a player that starts while
/// the sink has rendered a block of silence ahead replaces the silence in the sink, but not in the
/// recording. The recording then lacks its first milliseconds, at most a block of 5 ms, and it
/// seems to start that much later. The recorder asks the sink for blocks of 5 ms; while it runs,
/// players that would get longer ones are served as quickly.
///
/// All functions are called from one thread, which need not be the one that made the recorder.
class SinkRecorder {
public:
    enum class Suspending {
        /// The sink keeps running for the recorder.
        Prevented,
        /// The sink may suspend while only the recorder uses it; nothing is recorded meanwhile.
        Allowed
    };

    explicit SinkRecorder(std::string sink = "speaker",
                          Suspending suspending = Suspending::Prevented);
    SinkRecorder(const SinkRecorder&) = delete;
    SinkRecorder& operator=(const SinkRecorder&) = delete;
    ~SinkRecorder();

    /// Connects and waits until the blocks arrive live, which takes some tenths of a second. A sink
    /// without players may have rendered two seconds ahead; it is suspended for a moment to make it
    /// drop them. Returns false if that fails or takes longer than `timeout`. Called again, it
    /// continues the recording after a pause.
    [[nodiscard]] bool start(std::chrono::milliseconds timeout = std::chrono::seconds(10));
    void stop();
    /// Returns whether it records: from a successful `start()` to `stop()`, or until the server or
    /// the sink goes away.
    bool isRecording() const;

    /// Waits until everything played before `time` is recorded. Returns false if that takes longer
    /// than `timeout` or the recorder stops recording.
    [[nodiscard]] bool waitUntilRecorded(
        SteadyTime time, std::chrono::milliseconds timeout = std::chrono::seconds(5)) const;
    /// Waits for a sound that `firstSoundAfter()` would return, at most until everything played
    /// before `deadline` is recorded.
    std::optional<SteadyTime> waitForSound(SteadyTime after, float threshold,
                                           SteadyTime deadline) const;

    // As in Recording.
    std::optional<SteadyTime> firstSoundAfter(SteadyTime time, float threshold) const;
    float peakBetween(SteadyTime begin, SteadyTime end) const;
    std::vector<float> samples() const;
    [[nodiscard]] bool writeWav(const std::filesystem::path& path) const;

private:
    enum class State { Stopped, Connecting, Live, Dropped };

    // These run on the client library's thread.
    void contextChanged();
    void serverKnown(const pa_server_info* server);
    void connectStream();
    void streamChanged();
    void dropRenderedAhead();
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

    // While the main loop runs, only the library's thread uses these. The main loop is declared
    // first, because the others use it until they are destroyed.
    std::unique_ptr<pa_threaded_mainloop, MainloopDeleter> mainloop_;
    std::unique_ptr<pa_context, ContextDeleter> context_;
    std::unique_ptr<pa_stream, StreamDeleter> stream_;
    LivePace pace_{Recording::kRate};
    bool rendersAhead_ = true;

    mutable std::mutex lock_;
    mutable std::condition_variable changed_;
    State state_ = State::Stopped;  // guarded by lock_
    Recording recording_;           // guarded by lock_
};

}  // namespace chimewerk
