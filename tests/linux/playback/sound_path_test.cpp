// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The way from a sound file to the loudspeaker, on a real audio server whose sink is recorded.
// Needs a private session.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numbers>
#include <thread>

#include "linux/audio/pulse_connection.h"
#include "linux/playback/pulse_player.h"
#include "linux/playback/pulse_sound_service.h"
#include "support/kill_streams.h"
#include "support/open_descriptors.h"
#include "support/unprivileged.h"
#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/eventually.h"
#include "tools/process/shell.h"
#include "tools/recorder/sink_recorder.h"

namespace chimewerk {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr float kAudible = 0.02F;
constexpr auto kKillServer = "kill -9 $(cat $PULSE_RUNTIME_PATH/pid)";

std::chrono::duration<double> processorTime() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
    };
    return std::chrono::duration<double>(seconds(usage.ru_utime) + seconds(usage.ru_stime));
}

std::size_t residentBytes() {
    std::ifstream statm("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statm >> total >> resident;
    return resident * 4096;
}

class TheSoundPath : public testing::Test {
protected:
    void SetUp() override {
        connection.open();
        ASSERT_TRUE(eventually([] { return ourStreams() == 3; }));
    }

    /// Returns the number of the program's streams at the server.
    static std::size_t ourStreams() {
        const std::string list = outputOfShell("pactl list sink-inputs 2>/dev/null");
        std::size_t count = 0;
        for (std::size_t at = 0;
             (at = list.find("application.name = \"Chimewerk\"", at)) != std::string::npos; ++at) {
            ++count;
        }
        return count;
    }
    static bool allCorked() {
        return outputOfShell("pactl list sink-inputs").find("Corked: no") == std::string::npos;
    }
    static bool sinkSuspended() {
        return outputOfShell("pactl list short sinks").find("SUSPENDED") != std::string::npos;
    }

    SteadyClock::time_point play(const std::string& path, float volume = 1.0F) {
        const auto before = SteadyClock::now();
        const auto sound = service.soundFromFile(path);
        EXPECT_TRUE(sound) << path;
        if (sound) {
            sound->setVolume(volume);
            sound->play();
        }
        return before;
    }
    std::string file(const std::string& name, const std::vector<float>& samples) {
        writeSoundFile(folder / name, samples);
        return folder / name;
    }

    TemporaryFolder folder;
    Decoders decoders{CHIMEWERK_MODULE_DIR};
    PulseConnection connection;
    PulsePlayer player{connection, 500ms};
    PulseSoundService service{decoders, player, folder.path().string()};
    SinkRecorder recorder;
};

/// Where the sound in a recording starts, its length in frames from the first to the last audible
/// sample of the left channel, and the longest silence in between.
struct Extent {
    std::size_t first = 0;
    std::size_t frames = 0;
    std::size_t longestGap = 0;
};
Extent extentOf(const std::vector<float>& stereo, float threshold) {
    Extent extent;
    std::size_t last = 0;
    bool heard = false;
    for (std::size_t i = 0; i < stereo.size(); i += 2) {
        if (std::fabs(stereo[i]) >= threshold) {
            extent.first = heard ? extent.first : i / 2;
            extent.longestGap = heard ? std::max(extent.longestGap, i / 2 - last) : 0;
            last = i / 2;
            heard = true;
        }
    }
    extent.frames = heard ? last - extent.first + 1 : 0;
    return extent;
}

/// Pitches that can be told apart.
double pitch(int i) {
    return 400.0 + 350.0 * i;
}

using Frames = std::chrono::duration<double, std::ratio<1, 48000>>;

/// The highest level of a tone of this pitch in any 20 ms of a stretch of the left channel.
double mostLevel(const std::vector<float>& stereo, std::size_t from, Frames length, double hertz) {
    constexpr std::size_t kWindow = 960;
    const auto end = std::min(from + static_cast<std::size_t>(length.count()), stereo.size() / 2);
    double most = 0;
    for (std::size_t start = from; start + kWindow <= end; start += 120) {
        std::complex<double> sum;
        for (std::size_t i = 0; i < kWindow; ++i) {
            const double phase = 2 * std::numbers::pi * static_cast<double>(i);
            const double weight = 1 - std::cos(phase / kWindow);
            sum += weight * static_cast<double>(stereo[2 * (start + i)]) *
                   std::polar(1.0, phase * hertz / 48000);
        }
        most = std::max(most, 2 * std::abs(sum) / kWindow);
    }
    return most;
}

TEST_F(TheSoundPath, PlaysAWholeSoundAtItsVolumeAtOnce) {
    struct Case {
        double seconds;
        float volume;
    };
    for (const auto& [seconds, volume] : {Case{0.3, 1.0F}, {0.3, 0.3F}, {0.3, 7.0F}, {1.4, 0.9F}}) {
        const auto path = file("tone.wav", sine(480, 1.0, seconds));
        const auto length = std::chrono::milliseconds(std::lround(seconds * 1000));
        SinkRecorder listening;
        ASSERT_TRUE(listening.start());
        const auto asked = play(path, volume);
        const auto heard = listening.waitForSound(asked, kAudible, asked + 1s);
        ASSERT_TRUE(heard) << volume;
        EXPECT_LT(*heard - asked, 100ms) << volume;
        ASSERT_TRUE(listening.waitUntilRecorded(*heard + length + 200ms));
        EXPECT_NEAR(listening.peakBetween(asked, *heard + length), std::min(volume, 1.0F), 0.003F);
        listening.stop();
        const Extent extent = extentOf(listening.samples(), 0.001F);
        EXPECT_NEAR(static_cast<double>(extent.frames), seconds * 48000, 260) << volume;
        EXPECT_LT(extent.longestGap, 50U) << volume;
    }
    ASSERT_TRUE(eventually(allCorked));
}

TEST_F(TheSoundPath, LosesNothingOfASoundWhenTheSinkWasSuspended) {
    // Loud from the first frame to the last.
    const auto path = file("square.wav", std::vector<float>(19200, 0.5F));
    ASSERT_TRUE(eventually(sinkSuspended, 10s));
    SinkRecorder listening("speaker", SinkRecorder::Suspending::Allowed);
    ASSERT_TRUE(listening.start());
    ASSERT_TRUE(eventually(sinkSuspended, 10s));
    const auto asked = play(path);
    ASSERT_TRUE(listening.waitForSound(asked, kAudible, asked + 1s));
    std::this_thread::sleep_for(600ms);
    listening.stop();
    EXPECT_NEAR(static_cast<double>(extentOf(listening.samples(), 0.4F).frames), 9600, 260);
}

TEST_F(TheSoundPath, PlaysOneHundredSoundsAtOnceWithinRange) {
    const auto path = file("bell.wav", sine(700, 0.9, 0.4));
    ASSERT_TRUE(recorder.start());
    const auto begin = SteadyClock::now();
    for (int i = 0; i < 100; ++i) {
        play(path, 0.5F);
        std::this_thread::sleep_for(3ms);
    }
    const auto end = SteadyClock::now();
    EXPECT_LE(ourStreams(), 30U);
    ASSERT_TRUE(recorder.waitUntilRecorded(end + 1s));
    recorder.stop();
    EXPECT_LE(recorder.peakBetween(begin, end + 1s), 1.0F);
    EXPECT_GE(recorder.peakBetween(begin, end + 1s), 0.5F);
    // Tones of the same pitch cancel each other for moments; a gap from a starved stream is longer.
    const Extent extent = extentOf(recorder.samples(), 0.005F);
    EXPECT_GT(static_cast<double>(extent.frames) / 48000,
              std::chrono::duration<double>(end - begin).count() + 0.3);
    EXPECT_LT(extent.longestGap, 1440U);
    EXPECT_TRUE(eventually([] { return ourStreams() == 3; }, 15s));
    EXPECT_TRUE(allCorked());
}

TEST_F(TheSoundPath, LetsEachOfSeveralLoudSoundsBeHeardAtHalfItsLevelAtLeast) {
    struct Case {
        int count;
        std::chrono::milliseconds apart;
        double fading;  // 0 for a tone, more for a knock.
    };
    for (const auto& [count, apart, fading] : {Case{3, 100ms, 0.0}, {6, 90ms, 3.0}}) {
        std::vector<std::string> paths;
        std::vector<double> alone;
        for (int i = 0; i < count; ++i) {
            auto sound = sine(pitch(i), 1.0, 0.6);
            for (std::size_t at = 0; at < sound.size(); ++at) {
                sound[at] *=
                    static_cast<float>(std::exp(-fading * static_cast<double>(at) / 20000));
            }
            alone.push_back(mostLevel(sound, 0, 60ms, pitch(i)));
            paths.push_back(file(std::to_string(i) + ".wav", sound));
        }
        SinkRecorder listening;
        ASSERT_TRUE(listening.start());
        std::vector<SteadyClock::time_point> asked;
        for (const auto& path : paths) {
            asked.push_back(play(path));
            std::this_thread::sleep_until(asked.front() + apart * asked.size());
        }
        ASSERT_TRUE(listening.waitUntilRecorded(asked.back() + 800ms));
        listening.stop();
        const auto samples = listening.samples();
        EXPECT_LE(peakOf(samples), 1.0F) << count;
        const std::size_t first = extentOf(samples, kAudible).first;
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const auto onset =
                first + static_cast<std::size_t>(Frames(asked[i] - asked.front()).count());
            const double level = mostLevel(samples, onset, 200ms, pitch(static_cast<int>(i)));
            EXPECT_GE(level, 0.5 * alone[i]) << i << " of " << count;
        }
    }
}

TEST_F(TheSoundPath, KeepsKeysAudibleBesideALoudSongAndTheSumInRange) {
    const auto song = file("song.wav", sine(300, 1.0, 4));
    const auto key = file("key.wav", sine(2500, 0.8, 0.06));
    ASSERT_TRUE(recorder.start());
    auto due = play(song) + 500ms;
    for (int i = 0; i < 40; ++i) {
        std::this_thread::sleep_until(due += 50ms);
        play(key);
    }
    ASSERT_TRUE(recorder.waitUntilRecorded(due + 1200ms));
    recorder.stop();
    const auto samples = recorder.samples();
    // A busy machine may be late for a moment.
    EXPECT_LE(std::ranges::count_if(samples, [](float each) { return std::fabs(each) > 1.0F; }),
              std::ssize(samples) / 500);
    const std::size_t first = extentOf(samples, kAudible).first;
    int heard = 0;
    for (std::size_t at = first + 28800; at < first + 115200; at += 2400) {
        heard += mostLevel(samples, at, 60ms, 2500) >= 0.4 ? 1 : 0;
    }
    EXPECT_GE(heard, 32);  // Of 36.
    EXPECT_NEAR(mostLevel(samples, first + 9600, 100ms, 300), 1.0, 0.01);
    EXPECT_NEAR(mostLevel(samples, first + 134400, 100ms, 300), 1.0, 0.01);
}

TEST_F(TheSoundPath, PlaysNothingOldAndNothingLouderWhenADeviceGoesOnThatHadStopped) {
    const auto oldKey = file("old.wav", sine(700, 0.9, 0.1));
    const auto newKey = file("new.wav", sine(2500, 0.9, 0.1));
    for (const auto stopped : {500ms, 2500ms}) {
        SinkRecorder listening;
        ASSERT_TRUE(listening.start());
        ASSERT_EQ(runShell("pactl suspend-sink speaker 1"), 0);
        [[maybe_unused]] const auto resident = residentBytes();
        auto due = SteadyClock::now();
        for (const auto end = due + stopped; due < end; due += 50ms) {
            play(end - due > 1100ms ? oldKey : newKey);
            std::this_thread::sleep_until(due);
        }
        EXPECT_LE(ourStreams(), 30U);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
        EXPECT_LT(residentBytes(), resident + 4'000'000);
#endif
        ASSERT_EQ(runShell("pactl suspend-sink speaker 0"), 0);
        const auto resumed = SteadyClock::now();
        ASSERT_TRUE(listening.waitUntilRecorded(resumed + 500ms));
        listening.stop();
        const auto samples = listening.samples();
        EXPECT_LE(peakOf(samples), 1.0F) << stopped.count();
        const std::size_t first = extentOf(samples, kAudible).first;
        EXPECT_GE(mostLevel(samples, first, 100ms, 2500), 0.5) << stopped.count();
        EXPECT_LT(mostLevel(samples, first, 100ms, 700), 0.05) << stopped.count();
    }
}

TEST_F(TheSoundPath, DoesNotGoOnWithASoundAfterTheProgramWasStoppedForLong) {
    // More than the pool has streams for, so that one may be stopped while a part is decoded.
    const auto song = file("song.wav", sine(300, 0.9, 20));
    for (int i = 0; i < 20; ++i) {
        play(song, 0.1F);
        std::this_thread::sleep_for(7ms);
    }
    std::this_thread::sleep_for(160ms);
    const pid_t self = getpid();
    if (const pid_t alarm = fork(); alarm == 0) {
        sleep(2);
        kill(self, SIGCONT);
        _exit(0);
    } else {
        kill(self, SIGSTOP);
        waitpid(alarm, nullptr, 0);
    }
    ASSERT_TRUE(recorder.start());
    const auto resumed = SteadyClock::now();
    ASSERT_TRUE(recorder.waitUntilRecorded(resumed + 500ms));
    EXPECT_EQ(peakOf(recorder.samples()), 0.0F);
    const auto asked = play(file("tone.wav", sine(480, 0.5, 0.2)));
    EXPECT_TRUE(recorder.waitForSound(asked, kAudible, asked + 1s));
}

TEST_F(TheSoundPath, GivesBackTheMemoryThatABurstHasTaken) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "A sanitizer keeps what is freed.";
#endif
    const auto path = file("bell.wav", sine(700, 0.9, 0.9));
    const auto before = residentBytes();
    for (int i = 0; i < 100; ++i) {
        play(path, 0.5F);
    }
    EXPECT_GT(residentBytes(), before + 10'000'000);
    EXPECT_TRUE(eventually([&] { return residentBytes() < before + 3'000'000; }, 15s));
    // The player may have reconnected to free the memory that it shared with the server.
    EXPECT_TRUE(eventually([] { return ourStreams() == 3; }));
}

/// Returns how much the left channel's curve bends at most between two frames.
float largestBend(const std::vector<float>& stereo, std::size_t begin, std::size_t end) {
    float bend = 0;
    for (std::size_t i = begin; i < end; ++i) {
        bend = std::max(bend, std::fabs(stereo[2 * i] - 2 * stereo[2 * i - 2] + stereo[2 * i - 4]));
    }
    return bend;
}

TEST_F(TheSoundPath, PlaysALongFileToItsEndWithoutASeam) {
    // The sine below bends by 0.002; a seam by up to the height of its step.
    constexpr float kSeam = 0.004F;
    const auto wav = file("long.wav", sine(480, 0.5, 5));
    const std::string mp3 = folder / "long.mp3";
    ASSERT_EQ(runShell("ffmpeg -nostdin -v error -i " + wav + " -b:a 192k " + mp3), 0);
    // A server without real-time priority drops a period now and then. A seam of ours is always
    // there.
    float bend = 1;
    for (int attempt = 0; attempt < 3 && bend >= kSeam; ++attempt) {
        ASSERT_TRUE(recorder.start());
        const auto asked = play(mp3);
        ASSERT_TRUE(recorder.waitForSound(asked, kAudible, asked + 1s));
        ASSERT_TRUE(recorder.waitUntilRecorded(asked + 6s, 10s));
        recorder.stop();
        const auto samples = recorder.samples();
        const Extent extent = extentOf(samples, 0.05F);
        EXPECT_NEAR(static_cast<double>(extent.frames) / 48000, 5.0, 0.06);
        bend = largestBend(samples, extent.first + 2400, extent.first + extent.frames - 2400);
    }
    EXPECT_LT(bend, kSeam);
    EXPECT_TRUE(eventually(allCorked));
}

TEST_F(TheSoundPath, PlaysAgainAfterTheServerReturnsEvenIfItWasAwayAtTheStart) {
    const auto shortSound = file("short.wav", sine(480, 0.5, 0.2));
    play(file("long.wav", sine(480, 0.5, 20)));
    std::this_thread::sleep_for(300ms);
    ASSERT_EQ(runShell(kKillServer), 0);
    ASSERT_TRUE(eventually([] { return outputOfShell("pactl info 2>/dev/null").empty(); }));
    PulseConnection lateConnection;
    PulsePlayer latePlayer(lateConnection);
    PulseSoundService lateService(decoders, latePlayer, "");
    lateConnection.open();
    play(shortSound);  // Into the void.
    const auto processorBefore = processorTime();
    std::this_thread::sleep_for(5s);
    EXPECT_LT((processorTime() - processorBefore).count(), 0.1);

    ASSERT_EQ(runShell("$CHIMEWERK_START_PULSEAUDIO"), 0);
    ASSERT_TRUE(recorder.start());
    for (PulseSoundService* const either : {&lateService, &service}) {
        const auto asked = SteadyClock::now();
        either->soundFromFile(shortSound)->play();
        EXPECT_TRUE(recorder.waitForSound(asked, kAudible, asked + 2s)) << (either == &service);
        ASSERT_TRUE(recorder.waitUntilRecorded(SteadyClock::now() + 500ms));
    }
    EXPECT_TRUE(eventually([] { return ourStreams() == 6; }));
}

TEST_F(TheSoundPath, FollowsTheDefaultSinkAndGoesOnWhenThatIsUnpluggedOrItsStreamsAreKilled) {
    const auto path = file("tone.wav", sine(480, 0.5, 0.2));
    const std::string other =
        outputOfShell("pactl load-module module-null-sink sink_name=other rate=48000");
    SinkRecorder there("other");
    ASSERT_TRUE(there.start());
    ASSERT_TRUE(recorder.start());
    const auto isHeardBy = [&](SinkRecorder& listening) {
        const auto asked = play(path);
        return listening.waitForSound(asked, kAudible, asked + 2s).has_value();
    };
    EXPECT_TRUE(isHeardBy(recorder));
    ASSERT_EQ(runShell("pactl set-default-sink other"), 0);
    EXPECT_TRUE(isHeardBy(there));
    play(file("long.wav", sine(480, 0.1, 5)));
    ASSERT_EQ(runShell("pactl unload-module " + other + "; pactl set-default-sink speaker"), 0);
    EXPECT_TRUE(isHeardBy(recorder));
    SinkRecorder later;
    ASSERT_TRUE(killStreams("sink-input"));
    ASSERT_TRUE(later.start());
    EXPECT_TRUE(isHeardBy(later));
}

TEST_F(TheSoundPath, KeepsDescriptorsAndMemoryFlatThroughFiveThousandPlays) {
    const auto path = file("tick.wav", sine(2000, 0.3, 0.005));
    std::size_t descriptors = 0;
    [[maybe_unused]] std::size_t resident = 0;  // A sanitizer keeps freed memory.
    for (int i = 0; i <= 6000; ++i) {
        if (i == 1000 || i == 6000) {
            ASSERT_TRUE(eventually([] { return ourStreams() == 3; }, 15s));
            EXPECT_TRUE(eventually(allCorked));
            if (i == 6000) {
                EXPECT_LE(openDescriptors(), descriptors + 2);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
                EXPECT_LT(residentBytes(), resident + 2'000'000);
#endif
            }
            descriptors = openDescriptors();
            resident = residentBytes();
        }
        play(path);
        std::this_thread::sleep_for(1ms);
    }
}

TEST(TheConnection, NeitherKeepsItsCallerWaitingNorStartsAServer) {
    const TemporaryFolder folder;
    const std::string config = folder / "client.conf";
    const std::string program = folder / "server";
    std::ofstream(program) << "#!/bin/sh\ntouch " << folder / "started";
    ASSERT_EQ(mkfifo(config.c_str(), 0666), 0);
    ASSERT_EQ(runShell("chmod 755 " + program + "; chown -R nobody " + folder.path().string() +
                       "; chmod a+x $CHIMEWERK_SESSION $TMPDIR"),
              0);
    const std::string server = std::getenv("PULSE_SERVER");
    const std::string runtime = std::getenv("PULSE_RUNTIME_PATH");
    unsetenv("PULSE_SERVER");
    setenv("PULSE_RUNTIME_PATH", folder.path().c_str(), 1);
    setenv("PULSE_CLIENTCONFIG", config.c_str(), 1);
    {
        const Unprivileged unprivileged;  // Root's programs start no server anyway.
        // Like a file on a slow disk, the configuration can be read after a third of a second.
        std::jthread disk([&](const std::stop_token& stop) {
            std::this_thread::sleep_for(300ms);
            while (!stop.stop_requested()) {
                const int file = ::open(config.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
                if (file >= 0) {
                    dprintf(file, "autospawn = yes\ndaemon-binary = %s\n", program.c_str());
                    close(file);
                }
                std::this_thread::sleep_for(10ms);
            }
        });
        const auto before = SteadyClock::now();
        PulseConnection connection;
        connection.open();
        EXPECT_LT(SteadyClock::now() - before, 200ms);
        std::this_thread::sleep_for(1s);
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "started"));
    unsetenv("PULSE_CLIENTCONFIG");
    setenv("PULSE_RUNTIME_PATH", runtime.c_str(), 1);
    setenv("PULSE_SERVER", server.c_str(), 1);
}

TEST(TheSoundPathWithoutResources, StaysSilent) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit none = before;
    none.rlim_cur = 0;
    TemporaryFolder folder;
    writeSoundFile(folder / "tone.wav", sine(480, 0.5, 0.2));
    const Decoders decoders{CHIMEWERK_MODULE_DIR};
    const auto sound = std::shared_ptr<SoundFile>(SoundFile::open(decoders, folder / "tone.wav"));
    setrlimit(RLIMIT_NOFILE, &none);
    {
        PulseConnection connection;
        connection.open();
        PulsePlayer player(connection);
        player.play(sound, 1);
    }
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

TEST_F(TheSoundPath, CostsNothingWhileItIsQuiet) {
    play(file("tone.wav", sine(480, 0.5, 0.2)));
    ASSERT_TRUE(eventually([] { return !sinkSuspended(); }));
    ASSERT_TRUE(eventually(sinkSuspended, 10s));
    EXPECT_TRUE(allCorked());
    const auto before = processorTime();
    std::this_thread::sleep_for(2s);
    EXPECT_LT((processorTime() - before).count(), 0.02);
    EXPECT_TRUE(sinkSuspended());
}

TEST_F(TheSoundPath, KnowsAlertSoundsByTheirNamesOnly) {
    file("Tink.wav", sine(480, 0.5, 0.2));
    EXPECT_TRUE(service.soundNamed("Tink"));
    for (const char* const unknown : {"", "tink", "../Tink", "Tonk", "/"}) {
        EXPECT_FALSE(service.soundNamed(unknown)) << unknown;
    }
}

}  // namespace
}  // namespace chimewerk
