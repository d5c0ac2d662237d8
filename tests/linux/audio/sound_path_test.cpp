// The way from a sound file to the loudspeaker, on a real sound server whose sink is recorded. Needs a
// private session.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <thread>

#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_player.h"
#include "linux/audio/pulse_sound_service.h"
#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/eventually.h"
#include "tools/recorder/sink_recorder.h"

namespace chimewerk {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr float kAudible = 0.02F;

std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    std::array<char, 4096> block{};
    while (const std::size_t count = fread(block.data(), 1, block.size(), pipe.get())) {
        output.append(block.data(), count);
    }
    return output;
}

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
        ASSERT_TRUE(eventually([this] { return ourStreams() == 3; }));
    }

    /// How many streams the program has at the server.
    static std::size_t ourStreams() {
        const std::string list = outputOf("pactl list sink-inputs 2>/dev/null");
        std::size_t count = 0;
        for (std::size_t at = 0;
             (at = list.find("application.name = \"Chimewerk\"", at)) != std::string::npos; ++at) {
            ++count;
        }
        return count;
    }
    static bool allCorked() {
        return outputOf("pactl list sink-inputs").find("Corked: no") == std::string::npos;
    }
    static bool sinkSuspended() {
        return outputOf("pactl list short sinks").find("SUSPENDED") != std::string::npos;
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
    PulsePlayer player{connection};
    PulseSoundService service{decoders, player, folder.path().string()};
    SinkRecorder recorder;
};

/// Where the sound in a recording begins, how many frames it lasts, from the first to the last audible sample
/// of the left channel, and the longest stretch of silence within.
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

TEST_F(TheSoundPath, PlaysAWholeSoundAtItsVolumeAtOnce) {
    const auto path = file("tone.wav", sine(480, 0.8, 0.3));
    ASSERT_TRUE(recorder.start());
    for (const float volume : {1.0F, 0.3F, 7.0F}) {
        const auto asked = play(path, volume);
        const auto heard = recorder.waitForSound(asked, kAudible, asked + 1s);
        ASSERT_TRUE(heard);
        EXPECT_LT(*heard - asked, 100ms);
        ASSERT_TRUE(recorder.waitUntilRecorded(asked + 800ms));
        EXPECT_NEAR(recorder.peakBetween(asked, asked + 800ms), 0.8F * std::min(volume, 1.0F),
                    0.01F);
    }
    recorder.stop();
    const Extent extent = extentOf(recorder.samples(), 0.001F);
    EXPECT_LT(extent.longestGap, 48000U);
    ASSERT_TRUE(eventually(allCorked));
}

TEST_F(TheSoundPath, LosesNothingOfASoundWhenTheSinkWasSuspended) {
    // Loud from the very first frame to the very last.
    const auto path = file("square.wav", std::vector<float>(2 * 9600, 0.5F));
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
    // Tones of one pitch cancel each other for moments; a stream that starved would be heard for longer.
    const Extent extent = extentOf(recorder.samples(), 0.005F);
    EXPECT_GT(static_cast<double>(extent.frames) / 48000,
              std::chrono::duration<double>(end - begin).count() + 0.3);
    EXPECT_LT(extent.longestGap, 1440U);
    EXPECT_TRUE(eventually([] { return ourStreams() == 3; }, 15s));
    EXPECT_TRUE(allCorked());
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
    ASSERT_TRUE(eventually([] { return ourStreams() == 3; }, 15s));
    EXPECT_LT(residentBytes(), before + 3'000'000);
}

TEST_F(TheSoundPath, PlaysALongFileToItsEndWithoutASeam) {
    const auto wav = file("long.wav", sine(480, 0.5, 5));
    const std::string mp3 = folder / "long.mp3";
    ASSERT_EQ(std::system(("ffmpeg -nostdin -v error -i " + wav + " -b:a 192k " + mp3).c_str()), 0);
    ASSERT_TRUE(recorder.start());
    const auto asked = play(mp3);
    ASSERT_TRUE(recorder.waitForSound(asked, kAudible, asked + 1s));
    ASSERT_TRUE(recorder.waitUntilRecorded(asked + 6s, 10s));
    recorder.stop();
    const auto samples = recorder.samples();
    const Extent extent = extentOf(samples, 0.05F);
    EXPECT_NEAR(static_cast<double>(extent.frames) / 48000, 5.0, 0.06);
    EXPECT_LT(extent.longestGap, 100U);
    float bend = 0;
    for (std::size_t i = extent.first + 2400; i < extent.first + extent.frames - 2400; ++i) {
        bend =
            std::max(bend, std::fabs(samples[2 * i] - 2 * samples[2 * i - 2] + samples[2 * i - 4]));
    }
    EXPECT_LT(
        bend,
        0.004F);  // A sine of this pitch bends by 0.002; a seam by up to the height of the step.
    EXPECT_TRUE(eventually(allCorked));
}

TEST_F(TheSoundPath, IsHeardAgainAfterTheServerWasKilledInTheMiddleOfASound) {
    const auto longSound = file("long.wav", sine(480, 0.5, 20));
    const auto shortSound = file("short.wav", sine(480, 0.5, 0.2));
    play(longSound);
    std::this_thread::sleep_for(300ms);
    ASSERT_EQ(std::system("kill -9 $(cat \"$PULSE_RUNTIME_PATH/pid\")"), 0);
    ASSERT_TRUE(eventually([] { return outputOf("pactl info 2>/dev/null").empty(); }));
    play(shortSound);  // Into the void.
    const auto processorBefore = processorTime();
    std::this_thread::sleep_for(3s);
    EXPECT_LT((processorTime() - processorBefore).count(), 0.1);

    ASSERT_EQ(std::system("\"$CHIMEWERK_SESSION/start-pulseaudio\""), 0);
    ASSERT_TRUE(recorder.start());
    const auto asked = play(shortSound);
    EXPECT_TRUE(recorder.waitForSound(asked, kAudible, asked + 2s));
    EXPECT_TRUE(eventually([] { return ourStreams() == 3; }));
}

TEST_F(TheSoundPath, GoesOnWhenItsStreamsAreKilledOrItsDeviceIsTakenAway) {
    const auto path = file("tone.wav", sine(480, 0.5, 0.2));
    ASSERT_EQ(std::system("for i in $(pactl list short sink-inputs | cut -f1); do pactl "
                          "kill-sink-input $i 2>/dev/null || "
                          "pacmd kill-sink-input $i >/dev/null; done"),
              0);
    ASSERT_TRUE(recorder.start());
    const auto asked = play(path);
    EXPECT_TRUE(recorder.waitForSound(asked, kAudible, asked + 2s));
}

TEST_F(TheSoundPath, CostsNothingWhileItIsQuiet) {
    play(file("tone.wav", sine(480, 0.5, 0.2)));
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
