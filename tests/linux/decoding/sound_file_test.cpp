// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/sound_file.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "tools/files/text_file.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;

class ASoundFile : public testing::Test {
protected:
    std::unique_ptr<SoundFile> open(const std::string& name) {
        return SoundFile::open(decoders, folder / name);
    }

    /// Returns all frames of the file, in stereo.
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

    /// Converts a file to `name` with ffmpeg.
    void encode(const std::string& from, const std::string& name,
                const std::string& options) const {
        ffmpeg("-i " + (folder / from) + " " + options + " " + (folder / name));
    }
    static void ffmpeg(const std::string& arguments) {
        const std::string command = "ffmpeg -nostdin -v error -y " + arguments;
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }

    void writeBytes(const std::string& name, const std::string& bytes) const {
        writeFile(folder / name, bytes);
    }
    std::string bytesOf(const std::string& name) const { return readFile(folder / name); }

    TemporaryFolder folder;
    Decoders decoders{CHIMEWERK_MODULE_DIR};
};

double secondsOf(const std::vector<float>& stereo) {
    return static_cast<double>(stereo.size()) / 2 / kOutputRate;
}

/// Returns how often per second the left channel crosses zero upwards.
double crossingsPerSecond(const std::vector<float>& stereo) {
    int crossings = 0;
    for (std::size_t i = 2; i < stereo.size(); i += 2) {
        crossings += stereo[i - 2] < 0 && stereo[i] >= 0 ? 1 : 0;
    }
    return crossings / secondsOf(stereo);
}

/// Returns the largest second difference of the left channel. In a sine of w radians per frame it
/// is the amplitude times w squared; a missing or doubled frame makes it many times larger.
float greatestBend(const std::vector<float>& stereo, std::size_t skippedFrames) {
    float most = 0;
    for (std::size_t i = 2 * skippedFrames + 4; i + 2 * skippedFrames < stereo.size(); i += 2) {
        most = std::max(most, std::fabs(stereo[i] - 2 * stereo[i - 2] + stereo[i - 4]));
    }
    return most;
}

std::string noise(std::size_t size) {
    std::string bytes(size, '\0');
    unsigned state = 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

/// Returns the number of bytes that this process has read from files.
std::size_t bytesRead() {
    std::ifstream file("/proc/self/io");
    std::string label;
    std::size_t bytes = 0;
    file >> label >> bytes;
    return bytes;
}

/// Returns the memory in use; 0 if a sanitizer manages it.
std::size_t memoryInUse() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Expects a tone of 440 Hz at half of the full level; its length may differ by `within` seconds.
void expectTone(const std::vector<float>& stereo, double seconds, double within) {
    EXPECT_NEAR(secondsOf(stereo), seconds, within);
    EXPECT_NEAR(peakOf(stereo), 0.5, 0.06);
    EXPECT_NEAR(crossingsPerSecond(stereo), 440, 440 * within / seconds);
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
                 Case{"tone.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 44100, 2},
                 Case{"vorbis.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 1},
             }) {
            SCOPED_TRACE(std::string(c.name) + " of " + std::to_string(seconds) + " s");
            writeSoundFile(folder / c.name, sine(440, 0.5, seconds, c.rate, c.channels), c.rate,
                           c.channels, c.format);
            const auto file = open(c.name);
            ASSERT_TRUE(file);
            EXPECT_EQ(file->headIsAll(), seconds < 1);
            EXPECT_NEAR(file->seconds(), seconds, 0.08 + seconds * 0.01);
            expectTone(all(*file), seconds, 0.08);
        }
    }
}

TEST_F(ASoundFile, DecodesM4aAndOpus) {
    for (const double seconds : {0.3, 5.0}) {
        writeSoundFile(folder / "tone.wav", sine(440, 0.5, seconds), 48000);
        for (const char* const options :
             {"-f mp4 -c:a aac -b:a 128k", "-f mp4 -c:a alac", "-f ogg -c:a libopus",
              "-f mp4 -c:a aac -movflags +faststart -ar 44100"}) {
            SCOPED_TRACE(options);
            encode("tone.wav", "tone", options);
            const auto file = open("tone");
            ASSERT_TRUE(file);
            EXPECT_NEAR(file->seconds(), seconds, 0.06);
            expectTone(all(*file), seconds, 0.045);
        }
    }
    Decoders withoutModule{folder.path().string()};
    EXPECT_EQ(SoundFile::open(withoutModule, folder / "tone"), nullptr);
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
        EXPECT_NEAR(secondsOf(stereo), file->seconds(), 0.01) << entry.path();
        EXPECT_GT(peakOf(stereo), 0.02F) << entry.path();
        EXPECT_LE(peakOf(stereo), 1.0F) << entry.path();
    }
    EXPECT_GT(sounds, 100);
}

TEST_F(ASoundFile, ContinuesAfterItsHeadWithoutASeam) {
    // Large enough that only a part of the file is needed for the head, and at a rate that
    // needs conversion.
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
    EXPECT_NEAR(peakOf(file->head()), 3.0, 0.01);
    EXPECT_EQ(file->head()[1000], 0.0F);
    EXPECT_EQ(file->head()[1003], 0.0F);
}

TEST_F(ASoundFile, HasOnlySamplesThatCanBeAddedUp) {
    for (const int channels : {2, 6}) {
        std::vector<float> samples(static_cast<std::size_t>(24000 * channels));
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = i / 20 % 2 == 0 ? 3e38F : -3e38F;
        }
        // At another rate the samples pass the resampler's filter, which adds up many of them.
        writeSoundFile(folder / "loud.wav", samples, 44100, channels,
                       SF_FORMAT_WAV | SF_FORMAT_FLOAT);
        const auto file = open("loud.wav");
        ASSERT_TRUE(file);
        EXPECT_LT(peakOf(all(*file)), 100) << channels;
    }
}

TEST_F(ASoundFile, PlaysWhatItHasWhenItsEndIsLost) {
    writeSoundFile(folder / "whole.wav", sine(440, 0.5, 6), 48000);
    writeSoundFile(folder / "whole.aiff", sine(440, 0.5, 6), 48000, 2,
                   SF_FORMAT_AIFF | SF_FORMAT_PCM_16);
    fs::copy_file(folder / "whole.wav", folder / "wav");
    fs::copy_file(folder / "whole.aiff", folder / "aiff");
    encode("wav", "mp3", "-b:a 128k -f mp3");
    encode("wav", "flac", "-f flac");
    encode("wav", "ogg", "-f ogg -c:a libvorbis");
    encode("wav", "opus", "-f ogg -c:a libopus");
    encode("wav", "m4a", "-c:a aac -f mp4 -movflags +faststart");
    for (const std::string name : {"wav", "aiff", "mp3", "flac", "ogg", "opus", "m4a"}) {
        const std::string bytes = bytesOf(name);
        for (const double kept : {0.97, 0.5}) {
            writeBytes("cut", bytes.substr(0, static_cast<std::size_t>(
                                                  static_cast<double>(bytes.size()) * kept)));
            const auto file = open("cut");
            ASSERT_TRUE(file) << name << " cut to " << kept;
            // A page of Ogg is a second long and is lost as a whole.
            EXPECT_NEAR(secondsOf(all(*file)), 6 * kept, 1.1) << name << " cut to " << kept;
        }
        for (const std::size_t kept : {44U, 11U, 1U}) {
            writeBytes("cut", bytes.substr(0, kept));
            EXPECT_FALSE(open("cut")) << name << " cut to " << kept << " bytes";
        }
    }
}

TEST_F(ASoundFile, PlaysAnMp3WithoutATableOfContentsToItsEnd) {
    // The first frames are much longer than the average.
    ffmpeg(
        "-f lavfi -i anoisesrc=d=1:r=44100:a=0.9 -f lavfi -i sine=d=9:r=44100 -filter_complex "
        "'[0][1]concat=n=2:v=0:a=1' -c:a libmp3lame -q:a 0 -write_xing 0 " +
        (folder / "bare.mp3"));
    const auto file = open("bare.mp3");
    ASSERT_TRUE(file);
    EXPECT_NEAR(secondsOf(all(*file)), 10, 0.1);
}

TEST_F(ASoundFile, PlaysOnlyFormatsThatAreKnown) {
    for (const int format : {SF_FORMAT_AU, SF_FORMAT_W64, SF_FORMAT_CAF, SF_FORMAT_VOC}) {
        writeSoundFile(folder / "tone", sine(440, 0.5, 0.3), 48000, 2, format | SF_FORMAT_PCM_16);
        EXPECT_FALSE(open("tone")) << std::hex << format;
    }
    writeSoundFile(folder / "tone.wav", sine(440, 0.5, 0.3), 48000);
    for (const char* const options :
         {"-c:a mp2 -f mp2", "-c:a ac3 -f mp4", "-c:a flac -strict -2 -f mp4"}) {
        encode("tone.wav", "tone", options);
        EXPECT_FALSE(open("tone")) << options;
    }
}

TEST_F(ASoundFile, PlaysTheSoundOfAFilmWhicheverTrackComesFirst) {
    struct Case {
        const char* order;
        double hertz;
    };
    for (const Case& c : {Case{"-map 0 -map 1 -map 2", 440}, Case{"-map 2 -map 1 -map 0", 880}}) {
        ffmpeg(
            "-f lavfi -i testsrc=d=2:s=64x64 -f lavfi -i sine=880:d=2 -f lavfi -i sine=440:d=2 " +
            std::string(c.order) + " -c:v mpeg4 -c:a:0 ac3 -c:a:1 aac -f mp4 " +
            (folder / "film.m4a"));
        const auto file = open("film.m4a");
        ASSERT_TRUE(file) << c.order;
        EXPECT_NEAR(crossingsPerSecond(all(*file)), c.hertz, 20) << c.order;
    }
}

TEST_F(ASoundFile, EndsWhereItsFormChanges) {
    struct Case {
        const char* encoder;
        const char* format;
        int before;
        int after;
    };
    for (const Case& c :
         {Case{"truehd -strict -2", "truehd", 6, 2}, Case{"ac3", "ac3", 2, 1},
          Case{"libmp3lame", "mp3", 2, 1}, Case{"libmp3lame", "mp3", 1, 2},
          Case{"aac", "adts", 1, 2}, Case{"aac", "adts", 6, 2}, Case{"aac", "adts", 2, 6}}) {
        SCOPED_TRACE(std::string(c.encoder) + " from " + std::to_string(c.before) + " to " +
                     std::to_string(c.after));
        std::string bytes;
        for (const int channels : {c.before, c.after}) {
            ffmpeg("-f lavfi -i sine=440:d=1.5:r=48000 -ac " + std::to_string(channels) + " -c:a " +
                   c.encoder + " -f " + c.format + " " + (folder / "part"));
            bytes += bytesOf("part");
        }
        writeBytes("both", bytes);
        encode("both", "both.m4a", "-c copy -strict -2 -f mp4");
        const auto file = open("both.m4a");
        if (const std::string format = c.format; format != "mp3" && format != "adts") {
            EXPECT_FALSE(file);
            continue;
        }
        ASSERT_TRUE(file);
        EXPECT_NEAR(secondsOf(all(*file)), 1.5, 0.1);
    }
}

TEST_F(ASoundFile, TakesItsFormFromItsFramesNotFromItsHeader) {
    auto samples = sine(440, 0.5, 2);
    const auto right = sine(880, 0.5, 2);
    for (std::size_t i = 1; i < samples.size(); i += 2) {
        samples[i] = right[i];
    }
    writeSoundFile(folder / "stereo.wav", samples);
    encode("stereo.wav", "stereo.m4a", "-c:a aac -b:a 256k");
    // The header says that the frames are mono, as in HE-AAC version 2.
    std::string bytes = bytesOf("stereo.m4a");
    const std::size_t config = bytes.find("\x05\x80\x80\x80") + 5;
    ASSERT_EQ(bytes.substr(config, 2), "\x11\x90");
    bytes[config + 1] = '\x88';
    bytes[bytes.find("mp4a") + 21] = '\1';
    writeBytes("mono.m4a", bytes);
    const auto file = open("mono.m4a");
    const auto honest = open("stereo.m4a");
    ASSERT_TRUE(file);
    ASSERT_TRUE(honest);
    EXPECT_EQ(all(*file), all(*honest));
}

TEST_F(ASoundFile, LastsNoLongerThanADayWhateverItsHeaderSays) {
    writeSoundFile(folder / "tone.wav", sine(440, 0.5, 3));
    encode("tone.wav", "tone.m4a", "-c:a aac -use_editlist 0");
    std::string bytes = bytesOf("tone.m4a");
    for (const char* const header : {"mvhd", "mdhd"}) {
        // One tick per second, and more than 4 billion ticks.
        bytes.replace(bytes.find(header) + 16, 8, std::string("\0\0\0\1\xFF\xFF\xFF\xF0", 8));
    }
    writeBytes("centuries.m4a", bytes);
    const auto file = open("centuries.m4a");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->seconds(), 24 * 60 * 60);
}

TEST_F(ASoundFile, CostsLittleMemoryAndReadsLittleAheadHoweverLongItIs) {
    writeSoundFile(folder / "long.wav", sine(440, 0.5, 60));
    encode("long.wav", "long.aiff", "");
    encode("long.wav", "long.mp3", "-b:a 320k");
    encode("long.wav", "long.flac", "");
    encode("long.wav", "long.ogg", "-c:a libvorbis");
    encode("long.wav", "first.m4a", "-c:a alac -movflags +faststart");
    encode("long.wav", "last.m4a", "-c:a alac");
    constexpr std::size_t kOurs = std::size_t{512} * 1024;
    // FFmpeg has an index, which grows by about 1 KiB a second, and buffers of its own.
    constexpr std::size_t kWithFfmpeg = 2 * kOurs;
    struct Case {
        const char* name;
        std::size_t memory;
    };
    for (const auto& [name, memory] :
         {Case{"long.wav", kOurs}, Case{"long.aiff", kOurs}, Case{"long.mp3", kOurs},
          Case{"long.flac", kOurs}, Case{"long.ogg", kOurs}, Case{"first.m4a", kWithFfmpeg},
          Case{"last.m4a", kWithFfmpeg}}) {
        open(name);  // Loads libraries and creates tables.
        const auto readBefore = bytesRead();
        const auto memoryBefore = memoryInUse();
        const auto file = open(name);
        ASSERT_TRUE(file) << name;
        EXPECT_LT(bytesRead() - readBefore, 300'000U) << name;
        std::vector<float> part(2 * kOutputRate / 2);
        std::size_t most = 0;
        while (file->readRest(part) * 2 == part.size()) {
            most = std::max(most, memoryInUse());
        }
        EXPECT_LT(most, memoryBefore + memory) << name;
    }
}

TEST_F(ASoundFile, IsNoneForWhatHoldsNoSound) {
    writeSoundFile(folder / "good.wav", sine(440, 0.5, 3), 48000);
    writeSoundFile(folder / "no frames.wav", {}, 48000);
    writeBytes("empty.wav", "");
    writeBytes("text.wav", std::string(100'000, 'x'));
    writeBytes("noise.mp3", noise(500'000));
    writeBytes("noise behind a frame.mp3", "\xFF\xFB\x90" + noise(500'000));
    // Headers without end.
    std::string chunks;
    chunks.resize(40'000'000);
    chunks.replace(0, 12, std::string("RIFF\0\0\0\2WAVE", 12));
    for (std::size_t i = 12; i + 8 <= chunks.size(); i += 8) {
        chunks.replace(i, 4, "LIST");
    }
    writeBytes("chunks.wav", chunks);
    std::string tags;
    while (tags.size() < 4'000'000) {
        tags += std::string("ID3\3\0\0\0\0\0\0", 10);
    }
    writeBytes("tags.mp3", tags);
    fs::create_directory(folder / "folder.wav");
    mkfifo((folder / "pipe.wav").c_str(), 0600);
    fs::create_symlink("nowhere", folder / "dangling.wav");
    std::vector<std::string> silent = {
        "no frames.wav", "empty.wav", "text.wav",   "noise.mp3", "noise behind a frame.mp3",
        "chunks.wav",    "tags.mp3",  "folder.wav", "pipe.wav",  "dangling.wav",
        "missing.wav"};
    if (geteuid() != 0) {  // Root can read every file.
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

TEST_F(ASoundFile, OfUnknownLengthPlaysToItsEnd) {
    // A file that was written to a pipe: the lengths in its header are placeholders.
    writeSoundFile(folder / "tone.wav", sine(440, 0.5, 3), 48000, 1);
    std::string bytes = bytesOf("tone.wav");
    bytes.replace(4, 4, "\xFF\xFF\xFF\xFF");
    bytes.replace(40, 4, "\xFF\xFF\xFF\xFF");
    writeBytes("piped.wav", bytes);
    const auto file = open("piped.wav");
    ASSERT_TRUE(file);
    EXPECT_NEAR(secondsOf(all(*file)), 6.0, 0.1);
}

TEST_F(ASoundFile, EndsQuietlyWhenItIsCutOrOverwrittenWhileItPlays) {
    writeSoundFile(folder / "long.wav", sine(440, 0.5, 10), 48000);
    encode("long.wav", "long.mp3", "");
    encode("long.wav", "long.flac", "");
    encode("long.wav", "long.ogg", "-c:a libvorbis");
    encode("long.wav", "long.m4a", "-c:a aac");
    for (const char* const name : {"long.wav", "long.mp3", "long.flac", "long.ogg", "long.m4a"}) {
        const auto overwritten = open(name);
        ASSERT_TRUE(overwritten) << name;
        std::fstream(folder / name, std::ios::in | std::ios::out | std::ios::binary)
            << noise(fs::file_size(folder / name));
        EXPECT_LT(all(*overwritten).size(), 2U * 11 * kOutputRate) << name;
    }
    writeSoundFile(folder / "long.wav", sine(440, 0.5, 10), 48000);
    const auto cut = open("long.wav");
    ASSERT_TRUE(cut);
    fs::resize_file(folder / "long.wav", 1000);
    EXPECT_LT(all(*cut).size(), 2U * kOutputRate);
    std::vector<float> part(1000);
    EXPECT_EQ(cut->readRest(part), 0U);
}

}  // namespace
}  // namespace chimewerk
