// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/sound_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;

class ASoundFile : public testing::Test {
protected:
    std::unique_ptr<SoundFile> open(const std::string& name) {
        return SoundFile::open(decoders, folder / name);
    }

    /// Everything that the file yields, in stereo.
    static std::vector<float> all(SoundFile& file) {
        std::vector<float> stereo = file.head();
        std::vector<float> part(10000);
        std::size_t frames = 0;
        do {
            frames = file.readRest(part);
            stereo.insert(stereo.end(), part.begin(),
                          part.begin() + static_cast<std::ptrdiff_t>(2 * frames));
        } while (frames * 2 == part.size());
        return stereo;
    }

    /// Has ffmpeg make `name` from a WAV file that is there.
    void encode(const std::string& wav, const std::string& name, const std::string& options) const {
        const std::string command = "ffmpeg -nostdin -v error -y -i " + (folder / wav) + " " +
                                    options + " " + (folder / name);
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }

    void writeBytes(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }
    std::string bytesOf(const std::string& name) const {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder folder;
    Decoders decoders{CHIMEWERK_MODULE_DIR};
};

float peak(const std::vector<float>& samples) {
    float most = 0;
    for (const float sample : samples) {
        most = std::max(most, std::fabs(sample));
    }
    return most;
}

/// How often the left channel goes from below zero to above, a second.
double crossingsPerSecond(const std::vector<float>& stereo) {
    int crossings = 0;
    for (std::size_t i = 2; i < stereo.size(); i += 2) {
        crossings += stereo[i - 2] < 0 && stereo[i] >= 0 ? 1 : 0;
    }
    return crossings / (static_cast<double>(stereo.size()) / 2 / kOutputRate);
}

/// The greatest bend of the left channel; in a sine of w radians a frame it is amplitude times w
/// squared, and a missing or doubled frame shows as many times that.
float greatestBend(const std::vector<float>& stereo, std::size_t skippedFrames) {
    float most = 0;
    for (std::size_t i = 2 * skippedFrames + 4; i + 2 * skippedFrames < stereo.size(); i += 2) {
        most = std::max(most, std::fabs(stereo[i] - 2 * stereo[i - 2] + stereo[i - 4]));
    }
    return most;
}

TEST_F(ASoundFile, DecodesEveryFormatRateAndChannelCountToTheSameSound) {
    struct Case {
        const char* name;
        int format;
        int rate;
        int channels;
    };
    for (const double seconds : {0.3, 4.0}) {
        for (const Case& c : {
                 Case{"16.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 1},
                 Case{"8.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 8000, 1},
                 Case{"24.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 96000, 6},
                 Case{"32.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2},
                 Case{"adpcm.wav", SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM, 22050, 2},
                 Case{"11.wav", SF_FORMAT_WAVEX | SF_FORMAT_PCM_16, 192000, 11},
                 Case{"16.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 32000, 2},
                 Case{"3.mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, 44100, 2},
                 Case{"2.mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, 22050, 1},
             }) {
            SCOPED_TRACE(std::string(c.name) + " of " + std::to_string(seconds) + " s");
            writeSoundFile(folder / c.name, sine(440, 0.5, seconds, c.rate, c.channels), c.rate,
                           c.channels, c.format);
            const auto file = open(c.name);
            ASSERT_TRUE(file);
            EXPECT_EQ(file->headIsAll(), seconds < 1);
            EXPECT_NEAR(file->seconds(), seconds, 0.08 + seconds * 0.01);
            const auto stereo = all(*file);
            EXPECT_NEAR(static_cast<double>(stereo.size()) / 2 / kOutputRate, seconds, 0.08);
            EXPECT_NEAR(peak(stereo), 0.5, 0.06);
            EXPECT_NEAR(crossingsPerSecond(stereo), 440, 440 * 0.08 / seconds);
        }
    }
}

TEST_F(ASoundFile, DecodesM4a) {
    for (const double seconds : {0.3, 5.0}) {
        writeSoundFile(folder / "tone.wav", sine(440, 0.5, seconds), 48000);
        for (const char* const options :
             {"-c:a aac -b:a 128k", "-c:a alac", "-c:a aac -movflags +faststart -ar 44100"}) {
            SCOPED_TRACE(options);
            encode("tone.wav", "tone.m4a", options);
            const auto file = open("tone.m4a");
            ASSERT_TRUE(file);
            EXPECT_NEAR(file->seconds(), seconds, 0.06);
            const auto stereo = all(*file);
            EXPECT_NEAR(static_cast<double>(stereo.size()) / 2 / kOutputRate, seconds, 0.06);
            EXPECT_NEAR(crossingsPerSecond(stereo), 440, 20 / seconds);
            EXPECT_NEAR(peak(stereo), 0.5, 0.06);
        }
    }
    Decoders withoutModule{folder.path().string()};
    EXPECT_EQ(SoundFile::open(withoutModule, folder / "tone.m4a"), nullptr);
}

TEST_F(ASoundFile, DecodesEveryBundledSound) {
    int sounds = 0;
    for (const auto& entry : fs::recursive_directory_iterator(CHIMEWERK_SOUND_DIR)) {
        if (!entry.is_regular_file() || entry.path().extension() != ".wav") {
            continue;
        }
        ++sounds;
        const auto file = SoundFile::open(decoders, entry.path());
        ASSERT_TRUE(file) << entry.path();
        const auto stereo = all(*file);
        EXPECT_NEAR(static_cast<double>(stereo.size()) / 2 / kOutputRate, file->seconds(), 0.01)
            << entry.path();
        EXPECT_GT(peak(stereo), 0.02F) << entry.path();
        EXPECT_LE(peak(stereo), 1.0F) << entry.path();
    }
    EXPECT_GT(sounds, 100);
}

TEST_F(ASoundFile, GoesOnBehindItsHeadWithoutASeam) {
    // Large enough that the head is decoded from a part of the file, and at a rate that
    // needs converting.
    constexpr float kRadians = 2 * std::numbers::pi_v<float> * 440 / kOutputRate;
    for (const int rate : {44100, 48000}) {
        writeSoundFile(folder / "long.wav", sine(440, 0.5, 8, rate), rate);
        encode("long.wav", "long.mp3", "-b:a 320k");
        for (const char* const name : {"long.wav", "long.mp3"}) {
            const auto file = open(name);
            ASSERT_TRUE(file);
            EXPECT_LT(file->head().size(), 2U * kOutputRate);
            EXPECT_LT(greatestBend(all(*file), 2400), 0.5F * kRadians * kRadians * 1.5F)
                << name << " at " << rate;
        }
    }
}

TEST_F(ASoundFile, FindsTheSoundBehindAPictureInTheTag) {
    writeSoundFile(folder / "tone.wav", sine(440, 0.5, 3), 48000);
    encode("tone.wav", "plain.mp3", "-id3v2_version 0");
    const std::string picture(3'000'000, '\x7F');
    std::string tag("ID3\x03\0\0\0\0\0\0", 10);
    for (std::size_t i = 0; i < 4; ++i) {
        tag[6 + i] = static_cast<char>(picture.size() >> (7 * (3 - i)) & 0x7FU);
    }
    writeBytes("tagged.mp3", tag + picture + bytesOf("plain.mp3"));
    const auto file = open("tagged.mp3");
    ASSERT_TRUE(file);
    EXPECT_NEAR(file->seconds(), 3.0, 0.1);
    EXPECT_NEAR(crossingsPerSecond(all(*file)), 440, 10);
}

TEST_F(ASoundFile, SilencesSamplesThatAreNoNumbersAndKeepsThoseBeyondFullScale) {
    auto samples = sine(440, 3.0, 0.2);
    samples[1000] = std::numeric_limits<float>::quiet_NaN();
    samples[1003] = std::numeric_limits<float>::infinity();
    writeSoundFile(folder / "wild.wav", samples, 48000, 2, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    const auto file = open("wild.wav");
    ASSERT_TRUE(file);
    EXPECT_NEAR(peak(file->head()), 3.0, 0.01);
    EXPECT_EQ(file->head()[1000], 0.0F);
    EXPECT_EQ(file->head()[1003], 0.0F);
}

TEST_F(ASoundFile, IsNoneForWhatHoldsNoWholeSound) {
    writeSoundFile(folder / "good.wav", sine(440, 0.5, 3), 48000);
    writeSoundFile(folder / "good.aiff", sine(440, 0.5, 3), 48000, 2,
                   SF_FORMAT_AIFF | SF_FORMAT_PCM_16);
    encode("good.wav", "good.m4a", "-c:a aac");
    encode("good.wav", "good.mp3", "-b:a 128k");
    for (const std::string name : {"good.wav", "good.aiff", "good.m4a", "good.mp3"}) {
        ASSERT_TRUE(open(name)) << name;
        const std::string bytes = bytesOf(name);
        for (const std::size_t kept : {bytes.size() - 1000, bytes.size() / 2, std::size_t{44},
                                       std::size_t{11}, std::size_t{1}}) {
            writeBytes("cut", bytes.substr(0, kept));
            EXPECT_FALSE(open("cut")) << name << " cut to " << kept;
        }
    }
    writeSoundFile(folder / "no frames.wav", {}, 48000);
    writeBytes("empty.wav", "");
    writeBytes("text.wav", std::string(100'000, 'x'));
    writeBytes("noise.mp3", [] {
        std::string noise(500'000, '\0');
        unsigned state = 1;
        for (char& byte : noise) {
            state = state * 1664525U + 1013904223U;
            byte = static_cast<char>(state >> 24U);
        }
        return noise;
    }());
    writeBytes("huge.wav", bytesOf("good.wav"));
    fs::resize_file(folder / "huge.wav", std::uintmax_t{2} << 30U);
    fs::create_directory(folder / "folder.wav");
    mkfifo((folder / "pipe.wav").c_str(), 0600);
    fs::create_symlink("nowhere", folder / "dangling.wav");
    std::vector<std::string> silent = {"no frames.wav", "empty.wav",    "text.wav",
                                       "noise.mp3",     "huge.wav",     "folder.wav",
                                       "pipe.wav",      "dangling.wav", "missing.wav"};
    if (geteuid() != 0) {  // Nothing is unreadable to root.
        fs::copy_file(folder / "good.wav", folder / "locked.wav");
        fs::permissions(folder / "locked.wav", fs::perms::none);
        silent.emplace_back("locked.wav");
    }
    for (const auto& name : silent) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(open(name)) << name;
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500)) << name;
    }
}

TEST_F(ASoundFile, WhoseLengthIsNotToldPlaysToItsEnd) {
    // As written to a pipe: the lengths in the header are placeholders.
    writeSoundFile(folder / "tone.wav", sine(440, 0.5, 3), 48000, 1);
    std::string bytes = bytesOf("tone.wav");
    bytes.replace(4, 4, "\xFF\xFF\xFF\xFF");
    bytes.replace(40, 4, "\xFF\xFF\xFF\xFF");
    writeBytes("piped.wav", bytes);
    const auto file = open("piped.wav");
    ASSERT_TRUE(file);
    EXPECT_NEAR(static_cast<double>(all(*file).size()) / 2 / kOutputRate, 6.0, 0.1);
}

TEST_F(ASoundFile, EndsQuietlyWhenItsRestIsGoneByTheTimeItIsWanted) {
    writeSoundFile(folder / "long.wav", sine(440, 0.5, 10), 48000);
    const auto file = open("long.wav");
    ASSERT_TRUE(file);
    fs::resize_file(folder / "long.wav", 1000);
    std::vector<float> part(1000);
    EXPECT_EQ(file->readRest(part), 0U);
    EXPECT_EQ(file->readRest(part), 0U);
}

}  // namespace
}  // namespace chimewerk
