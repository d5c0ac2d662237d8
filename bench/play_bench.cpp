// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures what a play costs the main thread, up to the hand-over to the audio server.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "bench/null_parts.h"
#include "linux/base/epoll_main_queue.h"
#include "linux/base/posix_file_system.h"
#include "linux/decoding/sound_file.h"
#include "linux/desktop/null_file_manager_sounds.h"
#include "linux/storage/json_defaults_store.h"
#include "platform/notification_center.h"
#include "sound/sound_manager.h"
#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/shell.h"

namespace chimewerk {
namespace {

/// Reads and decodes real files, but plays nothing.
class ServerlessSoundService final : public SoundService {
public:
    std::shared_ptr<Sound> soundFromFile(const std::string& path) override {
        auto file = SoundFile::open(decoders_, path);
        return file ? std::make_shared<Unheard>(std::move(file)) : nullptr;
    }
    std::shared_ptr<Sound> soundNamed(std::string_view /*name*/) override { return nullptr; }

private:
    class Unheard final : public Sound {
    public:
        explicit Unheard(std::unique_ptr<SoundFile> file) : file_(std::move(file)) {}
        void setVolume(float /*volume*/) override {}
        void play() override { benchmark::DoNotOptimize(file_->head().data()); }
        Seconds duration() const override { return Seconds(file_->seconds()); }

    private:
        std::unique_ptr<SoundFile> file_;
    };

    Decoders decoders_{CHIMEWERK_MODULE_DIR};
};

void playAnEvent(benchmark::State& state, const std::string& eventId,
                 const std::string& ownFile = {}) {
    ImpatientQueue queue;
    EpollMainQueue storeQueue;
    NotificationCenter notifications;
    ServerlessSoundService service;
    const PosixFileSystem files;
    JsonDefaultsStore defaults(storeQueue, "");
    NullFileManagerSounds fileManager;
    SoundManager sounds(CHIMEWERK_SOUND_DIR,
                        {queue, notifications, service, files, defaults, fileManager});
    SoundEvent& event = *sounds.findEvent(eventId);
    event.isEnabled = true;
    event.soundPath = ownFile;
    for ([[maybe_unused]] const auto& round : state) {
        sounds.play(eventId);
        queue.runAll();  // The sound ends.
    }
}

const TemporaryFolder& folder() {
    static const TemporaryFolder made;
    return made;
}

/// Returns the path of a sound of this length. ffmpeg makes the formats that libsndfile
/// cannot write.
std::string soundOf(double seconds, const std::string& extension) {
    std::string wav = folder() / (std::to_string(seconds) + ".wav");
    writeSoundFile(wav, sine(440, 0.5, seconds));
    if (extension == "wav") {
        return wav;
    }
    std::string path = folder() / (std::to_string(seconds) + "." + extension);
    if (runShell("ffmpeg -nostdin -v error -y -i " + wav + " " + path) != 0) {
        std::abort();
    }
    return path;
}

void registerAll() {
    benchmark::RegisterBenchmark("play/theme sound",
                                 [](benchmark::State& state) { playAnEvent(state, "trash_add"); });
    for (const char* const extension : {"wav", "aiff", "mp3", "m4a"}) {
        for (const double seconds : {0.3, 600.0}) {
            const std::string path = soundOf(seconds, extension);
            const std::string name =
                std::string("play/") + extension + " of " + (seconds < 1 ? "0.3 s" : "10 min");
            benchmark::RegisterBenchmark(name.c_str(), [path](benchmark::State& state) {
                playAnEvent(state, "slap", path);
            })->Unit(benchmark::kMicrosecond);
        }
    }
}

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    chimewerk::registerAll();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
