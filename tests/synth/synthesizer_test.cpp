// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "sound/sound_event.h"
#include "sound/sound_theme.h"
#include "tools/files/temporary_folder.h"
#include "tools/files/text_file.h"
#include "tools/process/shell.h"

// Runs the sound synthesizer as the build does.
namespace chimewerk::synth {
namespace {

namespace fs = std::filesystem;

const fs::path kBuilt = CHIMEWERK_SOUND_DIR;

/// Runs the program and returns its output, followed by its exit status on a separate line.
std::string synthesize(const std::string& folder, const std::string& before = "") {
    return outputOfShell(before + " '" CHIMEWERK_SYNTH "' " + folder + " 2>&1; echo $?");
}

std::set<std::string> filesIn(const fs::path& folder) {
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.insert(fs::relative(entry.path(), folder).string());
        }
    }
    return files;
}

/// Returns every file that the events and themes need.
std::set<std::string> catalogue() {
    std::set<std::string> sounds = {"key_click", "key_space", "key_return"};
    std::set<std::string> files;
    for (const std::string& key : sounds) {
        files.insert(key + ".wav");
    }
    for (const SoundEvent& event : factoryEvents()) {
        files.insert("alerts/" + event.systemFallback + ".wav");
        // A key press has three sounds instead of one.
        if (event.id != "key_press") {
            sounds.insert(event.id);
        }
    }
    for (const SoundTheme theme : kAllThemes) {
        for (const std::string& sound :
             theme == SoundTheme::system ? std::set<std::string>{} : sounds) {
            files.insert("t_" + std::string(rawValue(theme)) + "_" + sound + ".wav");
        }
    }
    return files;
}

TEST(TheSynthesizer, MakesTheSameSmallFilesOfTheCatalogueWhateverTheLocale) {
    const TemporaryFolder folder;
    ASSERT_EQ(synthesize(folder.path(), "LC_ALL=de_DE.UTF-8 TZ=Asia/Tokyo"), "0");
    const std::set<std::string> files = filesIn(folder.path());
    EXPECT_EQ(files, catalogue());
    EXPECT_EQ(files, filesIn(kBuilt));
    std::uintmax_t bytes = 0;
    for (const std::string& file : files) {
        EXPECT_TRUE(readFile(folder / file) == readFile(kBuilt / file)) << file;
        bytes += fs::file_size(folder / file);
    }
    EXPECT_LT(bytes, 8'000'000U);
}

TEST(TheSynthesizer, ReportsWriteErrorsAndLeavesNoPartialFile) {
    const TemporaryFolder folder;
    EXPECT_THAT(synthesize(folder / "nowhere"), testing::ContainsRegex("nowhere.*\n1$"));
    EXPECT_THAT(synthesize(""), testing::EndsWith("\n2"));

    // Limits files to 32 KiB, as on a full disk: the first long sound fails halfway.
    EXPECT_THAT(synthesize(folder.path(), "trap '' XFSZ; ulimit -f 64;"),
                testing::ContainsRegex("cannot write " + folder.path().string() +
                                       ".*File too large.*\n1$"));
    const std::set<std::string> complete = filesIn(folder.path());
    EXPECT_FALSE(complete.empty());
    for (const std::string& file : complete) {
        EXPECT_TRUE(readFile(folder / file) == readFile(kBuilt / file)) << file;
    }
}

TEST(TheSynthesizer, ReportsAFileThatCannotTakeItsName) {
    const TemporaryFolder folder;
    fs::create_directories(folder.path() / "t_8bit_slap.wav" / "occupied");
    EXPECT_THAT(synthesize(folder.path()), testing::ContainsRegex("t_8bit_slap.wav.*\n1$"));
    EXPECT_FALSE(fs::exists(folder.path() / "t_8bit_slap.wav.part"));
}

}  // namespace
}  // namespace chimewerk::synth
