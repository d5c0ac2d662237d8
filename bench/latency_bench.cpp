// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the time from the call to the first sample at the sink for Chimewerk and three other
// ways to play a short sound, in turn. Needs a private session; `latency` beside this file
// starts it.
#include <pulse/pulseaudio.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "linux/audio/pulse_connection.h"
#include "linux/playback/pulse_player.h"
#include "linux/playback/pulse_sound_service.h"
#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/child_process.h"
#include "tools/process/shell.h"
#include "tools/recorder/sink_recorder.h"

namespace chimewerk {
namespace {

using namespace std::chrono_literals;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr float kAudible = 0.05F;
constexpr int kRounds = 25;
constexpr auto kQuiet = 700ms;

/// One way to play the file.
class Way {
public:
    virtual ~Way() = default;
    virtual void play() = 0;
};

class Ours final : public Way {
public:
    explicit Ours(std::string path) : path_(std::move(path)) { connection_.open(); }
    void play() override { service_.soundFromFile(path_)->play(); }

private:
    std::string path_;
    Decoders decoders_{CHIMEWERK_MODULE_DIR};
    PulseConnection connection_;
    PulsePlayer player_{connection_};
    PulseSoundService service_{decoders_, player_, ""};
};

constexpr pa_sample_spec kForm{.format = PA_SAMPLE_FLOAT32LE, .rate = 48000, .channels = 2};

/// A client of the audio server with its own thread.
class Client {
public:
    Client() {
        pa_context_connect(context, nullptr, PA_CONTEXT_NOFLAGS, nullptr);
        pa_threaded_mainloop_start(loop);
        std::this_thread::sleep_for(200ms);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() {
        pa_threaded_mainloop_stop(loop);
        pa_context_disconnect(context);
        pa_context_unref(context);
        pa_threaded_mainloop_free(loop);
    }

    pa_stream* newStream(pa_stream_request_cb_t wanted, void* user) const {
        pa_stream* const stream = pa_stream_new(context, "bench", &kForm, nullptr);
        pa_stream_set_write_callback(stream, wanted, user);
        constexpr auto kChoice = static_cast<std::uint32_t>(-1);
        const pa_buffer_attr buffer{kChoice,
                                    static_cast<std::uint32_t>(pa_usec_to_bytes(10000, &kForm)), 0,
                                    kChoice, kChoice};
        pa_stream_connect_playback(stream, nullptr, &buffer, PA_STREAM_ADJUST_LATENCY, nullptr,
                                   nullptr);
        return stream;
    }

    pa_threaded_mainloop* const loop = pa_threaded_mainloop_new();
    pa_context* const context = pa_context_new(pa_threaded_mainloop_get_api(loop), "bench");
};

/// Plays through a stream that never stops: silence when there is no sound.
class KeptFed final : public Way {
public:
    explicit KeptFed(std::string path) : path_(std::move(path)) {
        pa_threaded_mainloop_lock(client_.loop);
        client_.newStream([](pa_stream* stream, std::size_t bytes,
                             void* user) { static_cast<KeptFed*>(user)->feed(stream, bytes); },
                          this);
        pa_threaded_mainloop_unlock(client_.loop);
    }
    void play() override {
        auto file = SoundFile::open(decoders_, path_);
        pa_threaded_mainloop_lock(client_.loop);
        waiting_ = file->head();
        at_ = 0;
        pa_threaded_mainloop_unlock(client_.loop);
    }

private:
    void feed(pa_stream* stream, std::size_t bytes) {
        std::vector<float> block(bytes / sizeof(float));
        const std::size_t count = std::min(block.size(), waiting_.size() - at_);
        std::copy_n(waiting_.begin() + static_cast<std::ptrdiff_t>(at_), count, block.begin());
        at_ += count;
        pa_stream_write(stream, block.data(), block.size() * sizeof(float), nullptr, 0,
                        PA_SEEK_RELATIVE);
    }

    std::string path_;
    Decoders decoders_{CHIMEWERK_MODULE_DIR};
    std::vector<float> waiting_;
    std::size_t at_ = 0;
    Client client_;
};

/// Makes a new stream for each sound.
class NewStream final : public Way {
public:
    explicit NewStream(std::string path) : path_(std::move(path)) {}
    void play() override {
        auto file = SoundFile::open(decoders_, path_);
        pa_threaded_mainloop_lock(client_.loop);
        if (stream_ != nullptr) {
            pa_stream_set_write_callback(stream_, nullptr, nullptr);
            pa_stream_disconnect(stream_);
            pa_stream_unref(stream_);
        }
        waiting_ = file->head();
        stream_ = client_.newStream(
            [](pa_stream* stream, std::size_t, void* user) {
                auto& waiting = static_cast<NewStream*>(user)->waiting_;
                if (!waiting.empty()) {
                    pa_stream_write(stream, waiting.data(), waiting.size() * sizeof(float), nullptr,
                                    0, PA_SEEK_RELATIVE);
                    waiting.clear();
                }
            },
            this);
        pa_threaded_mainloop_unlock(client_.loop);
    }

private:
    std::string path_;
    Decoders decoders_{CHIMEWERK_MODULE_DIR};
    std::vector<float> waiting_;
    pa_stream* stream_ = nullptr;
    Client client_;
};

class Paplay final : public Way {
public:
    explicit Paplay(std::string path) : path_(std::move(path)) {}
    void play() override { running_.emplace(std::vector<std::string>{"paplay", path_}); }

private:
    std::string path_;
    std::optional<ChildProcess> running_;
};

struct Result {
    std::string name;
    std::unique_ptr<Way> way;
    std::vector<double> milliseconds = {};
    int unheard = 0;

    double quantile(double q) {
        std::sort(milliseconds.begin(), milliseconds.end());
        return milliseconds.empty() ? 0
                                    : milliseconds[static_cast<std::size_t>(
                                          q * static_cast<double>(milliseconds.size() - 1))];
    }
};

void measure(SinkRecorder& recorder, std::vector<Result>& results, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        for (Result& result : results) {
            std::this_thread::sleep_for(kQuiet + std::chrono::milliseconds(round * 7 % 30));
            const auto called = std::chrono::steady_clock::now();
            result.way->play();
            const auto heard = recorder.waitForSound(called, kAudible, called + 2s);
            if (heard) {
                result.milliseconds.push_back(Milliseconds(*heard - called).count());
            } else {
                ++result.unheard;
            }
        }
    }
}

int run(const std::string& sink) {
    const TemporaryFolder folder;
    // Loud from the first sample.
    const std::string shortWav = folder / "short.wav";
    writeSoundFile(shortWav, std::vector<float>(28800, 0.5F));
    const std::string mp3 = folder / "long.mp3";
    if (runShell("ffmpeg -nostdin -v error -f lavfi -i 'sine=frequency=1000:duration=600' -af "
                 "volume=4 -b:a 192k " +
                 mp3) != 0) {
        return 1;
    }
    SinkRecorder recorder(sink);
    if (!recorder.start()) {
        std::fprintf(stderr, "no recording of the sink %s\n", sink.c_str());
        return 1;
    }
    std::vector<Result> results;
    results.push_back({"ours, WAV of 0.3 s", std::make_unique<Ours>(shortWav)});
    results.push_back({"a stream kept fed", std::make_unique<KeptFed>(shortWav)});
    results.push_back({"a new stream for each", std::make_unique<NewStream>(shortWav)});
    results.push_back({"paplay", std::make_unique<Paplay>(shortWav)});
    measure(recorder, results, kRounds);
    // The long sound would still play during the others' turns, so it comes last, and each play has
    // its own player.
    std::vector<Result> longSound;
    for (int round = 0; round < kRounds; ++round) {
        longSound.resize(1);
        longSound[0].name = "ours, MP3 of 10 min";
        longSound[0].way = std::make_unique<Ours>(mp3);
        measure(recorder, longSound, 1);
        longSound[0].way = nullptr;
    }
    results.push_back(std::move(longSound[0]));
    const double ours = results.front().quantile(0.5);
    std::printf("%-24s %9s %9s %9s %8s\n", "", "median", "90 %", "x ours", "unheard");
    for (Result& result : results) {
        std::printf("%-24s %6.2f ms %6.2f ms %9.2f %8d\n", result.name.c_str(),
                    result.quantile(0.5), result.quantile(0.9), result.quantile(0.5) / ours,
                    result.unheard);
    }
    return 0;
}

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    return chimewerk::run(argc > 1 ? argv[1] : "speaker");
}
