#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "synth/sound_set.h"
#include "synth/wav_file.h"
#include "tools/files/temporary_folder.h"

// The program that makes the sounds, run as the build runs it.
namespace chimewerk::sounds {
namespace {

struct Outcome {
    int status = -1;
    std::string text;
};

Outcome shell(const std::string& command) {
    Outcome outcome;
    FILE* output = popen((command + " 2>&1").c_str(), "r");
    std::array<char, 256> line{};
    while (fgets(line.data(), line.size(), output) != nullptr) {
        outcome.text += line.data();
    }
    outcome.status = WEXITSTATUS(pclose(output));
    return outcome;
}

Outcome synthesize(const std::string& arguments) {
    return shell("'" CHIMEWERK_SYNTH "' " + arguments);
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(TheSynthesizer, MakesTheSameBytesEachTimeWhateverTheLocale) {
    const TemporaryFolder folder;
    const Outcome outcome =
        shell("LC_ALL=de_DE.UTF-8 TZ=Asia/Tokyo '" CHIMEWERK_SYNTH "' " + folder.path().string());
    ASSERT_EQ(outcome.status, 0) << outcome.text;
    for (const SoundFile& file : everySoundFile()) {
        EXPECT_TRUE(bytesOf(folder.path() / file.path) == bytesOf(soundsFolder() / file.path))
            << file.path;
    }
}

TEST(TheSynthesizer, SaysWhyItCannotWriteAndLeavesNoHalfFile) {
    const TemporaryFolder folder;
    const Outcome missing = synthesize(folder / "nowhere");
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.text, testing::HasSubstr("nowhere"));
    EXPECT_EQ(synthesize("").status, 2);

    // No file may grow beyond 32 KiB, as on a disk that is full: the first long sound fails halfway.
    const Outcome full =
        shell("trap '' XFSZ; ulimit -f 64; exec '" CHIMEWERK_SYNTH "' " + folder.path().string());
    EXPECT_EQ(full.status, 1);
    EXPECT_THAT(full.text, testing::HasSubstr("cannot write " + folder.path().string()));
    EXPECT_THAT(full.text, testing::HasSubstr("File too large"));
    int complete = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().extension(), ".wav");
        EXPECT_NO_THROW(readWav(entry.path()));
        ++complete;
    }
    EXPECT_GT(complete, 0);
}

TEST(TheSynthesizer, ReportsAFileThatCannotTakeItsName) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path() / "t_8bit_slap.wav" / "occupied");
    const Outcome outcome = synthesize(folder.path().string());
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.text, testing::HasSubstr("t_8bit_slap.wav"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "t_8bit_slap.wav.part"));
}

}  // namespace
}  // namespace chimewerk::sounds
