// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/xdg_sound_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>

#include "linux/base/epoll_main_queue.h"
#include "support/run_queue.h"
#include "support/small_disk.h"
#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "tools/files/text_file.h"
#include "tools/process/eventually.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
using Kind = SoundFolder::Outcome::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

class TheSoundFolder : public testing::Test {
protected:
    /// Creates a sound file of this length in the user's music folder and returns its path.
    std::string music(const std::string& name, double seconds = 0.1) const {
        fs::create_directories(home / "music");
        writeSoundFile(home / ("music/" + name), sine(440, 0.5, seconds));
        return home / ("music/" + name);
    }
    /// Creates a sparse sound file that takes some time to copy.
    std::string largeMusic(const std::string& name) const {
        constexpr std::uint32_t kSize = 600 << 20;
        std::string path = music(name);
        fs::resize_file(path, kSize);
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        for (const auto& [place, header] : {std::pair{4, 8U}, {40, 44U}}) {
            const std::uint32_t length = kSize - header;
            file.seekp(place).write(reinterpret_cast<const char*>(&length), sizeof length);
        }
        return path;
    }
    SoundFolder::Outcome load(const std::string& path) {
        std::optional<SoundFolder::Outcome> outcome;
        const auto addition = sounds->add(path, [&](const auto& result) { outcome = result; });
        EXPECT_FALSE(outcome) << "before add() returned";
        EXPECT_TRUE(runUntil(
            queue, [&] { return outcome.has_value(); }, Seconds{30}));
        return outcome.value_or(SoundFolder::Outcome{});
    }
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        std::error_code ignored;
        for (const auto& entry : fs::directory_iterator(folder, ignored)) {
            found.push_back(entry.path().filename().string());
        }
        std::ranges::sort(found);
        return found;
    }

    TemporaryFolder home;
    const std::string folder = home / "data/Chimewerk";
    EpollMainQueue queue;
    Decoders decoders{CHIMEWERK_MODULE_DIR};
    std::optional<XdgSoundFolder> sounds{std::in_place, queue, decoders, home / "data"};
};

TEST_F(TheSoundFolder, CopiesAFileUnderItsName) {
    for (const std::string& name :
         {std::string("knock.wav"), std::string("a b\n.WAV"), std::string("\xff\xfe.mp3"),
          std::string(".hidden"), std::string("Ä📁.aiff"), std::string(255, 'n')}) {
        SCOPED_TRACE(name);
        load(music(name, 0.2));  // Replaced by the later one
        const std::string path = music(name);
        const auto outcome = load(path);
        EXPECT_EQ(outcome.kind, Kind::added) << outcome.error;
        EXPECT_EQ(outcome.path, folder + "/" + name);
        EXPECT_EQ(readFile(outcome.path), readFile(path));
        EXPECT_THAT(names(), ElementsAre(name));
        fs::remove(outcome.path);
    }
}

TEST_F(TheSoundFolder, UsesAFileInTheFolderInPlace) {
    const std::string there = load(music("knock.wav")).path;
    fs::create_directories(home / "other");
    fs::create_symlink(there, home / "other/knock.wav");
    fs::create_directories(home / "hard");
    fs::create_hard_link(there, home / "hard/knock.wav");
    fs::create_directory_symlink(folder, home / "folder");
    struct stat before {};
    ASSERT_EQ(stat(there.c_str(), &before), 0);
    for (const std::string& path : {there, home / "other/knock.wav", home / "hard/knock.wav",
                                    home / "folder/knock.wav", fs::relative(there).string()}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(load(path).path, there);
        struct stat after {};
        ASSERT_EQ(stat(there.c_str(), &after), 0);
        EXPECT_EQ(after.st_ino, before.st_ino) << "it was copied";
    }

    const std::string text = folder + "/text.wav";
    std::ofstream(text) << "the user's";
    EXPECT_EQ(load(text).kind, Kind::notASound);
    EXPECT_EQ(readFile(text), "the user's") << "it is no copy of ours";
}

TEST_F(TheSoundFolder, NeverWritesThroughALink) {
    const std::string own = music("own.wav", 0.3);
    const std::string bytes = readFile(own);
    fs::create_directories(folder);
    fs::create_symlink(own, folder + "/knock.wav");
    fs::create_symlink(home / "nowhere", folder + "/pop.wav");
    for (const std::string& name : {std::string("knock.wav"), std::string("pop.wav")}) {
        EXPECT_EQ(load(music(name)).kind, Kind::added) << name;
        EXPECT_FALSE(fs::is_symlink(folder + "/" + name)) << name;
    }
    EXPECT_EQ(readFile(own), bytes);
    EXPECT_FALSE(fs::exists(home / "nowhere"));
}

TEST_F(TheSoundFolder, IsUnchangedWhenAFileCannotBeCopied) {
    const std::string before = readFile(load(music("knock.wav", 0.1)).path);
    fs::create_directories(folder + "/taken.wav");
    fs::create_directories(home / "other");
    ASSERT_EQ(mkfifo((home / "other/knock.wav").c_str(), 0600), 0);
    struct Case {
        std::string path;
        int error;
    };
    for (const auto& [path, error] :
         {Case{home / "gone/knock.wav", ENOENT}, Case{home / "music", EISDIR}, Case{"", ENOENT},
          Case{home / "other/knock.wav", EOPNOTSUPP}, Case{music("taken.wav"), EISDIR},
          Case{music("knock.wav") + "/", ENOTDIR}}) {
        SCOPED_TRACE(path);
        const auto outcome = load(path);
        EXPECT_EQ(outcome.kind, Kind::notCopied);
        EXPECT_EQ(outcome.error, std::strerror(error));
        EXPECT_EQ(readFile(folder + "/knock.wav"), before);
        EXPECT_THAT(names(), ElementsAre("knock.wav", "taken.wav"));
    }
}

TEST_F(TheSoundFolder, KeepsThePreviousSoundWhenTheDiskIsFull) {
    const std::string before = readFile(load(music("knock.wav", 0.1)).path);
    const std::string later = music("knock.wav", 5);
    const SmallDisk disk(100'000);
    EXPECT_EQ(load(later).error, std::strerror(EFBIG));
    EXPECT_EQ(readFile(folder + "/knock.wav"), before);
    EXPECT_THAT(names(), ElementsAre("knock.wav"));
}

TEST_F(TheSoundFolder, ReportsThatItCannotBeMade) {
    const std::string sound = music("knock.wav");
    std::ofstream(home / "data") << "in the way";
    EXPECT_EQ(load(sound).error, std::strerror(ENOTDIR));
    sounds.emplace(queue, decoders, "");
    EXPECT_EQ(load(sound).error, std::strerror(ENOENT));
}

TEST_F(TheSoundFolder, RefusesFilesThatHoldNoSound) {
    const std::string before = readFile(load(music("knock.wav")).path);
    const std::string whole = readFile(music("knock.wav", 1));
    for (const std::string& bytes : {std::string("no sound"), std::string(), whole.substr(0, 44)}) {
        std::ofstream(home / "music/knock.wav", std::ios::binary) << bytes;
        EXPECT_EQ(load(home / "music/knock.wav").kind, Kind::notASound) << bytes.size();
        EXPECT_EQ(readFile(folder + "/knock.wav"), before) << bytes.size();
        EXPECT_THAT(names(), ElementsAre("knock.wav")) << bytes.size();
    }
}

TEST_F(TheSoundFolder, IsUnchangedWhenACopyIsCancelled) {
    const std::string before = readFile(load(music("knock.wav")).path);
    auto addition = sounds->add(largeMusic("knock.wav"), [](const auto&) { ADD_FAILURE(); });
    ASSERT_TRUE(eventually([&] { return names().size() == 2; }));
    // Another instance must not remove it as a leftover.
    const XdgSoundFolder another(queue, decoders, home / "data");
    EXPECT_EQ(names().size(), 2U);
    addition.reset();
    EXPECT_TRUE(runUntil(queue, [&] { return names().size() == 1; }));
    EXPECT_EQ(readFile(folder + "/knock.wav"), before);
    // The next copy need not wait. Cancelled when it is finished, it must not change
    // anything either.
    addition = sounds->add(music("knock.wav", 0.3), [](const auto&) { ADD_FAILURE(); });
    pollfd posted{.fd = queue.descriptor(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&posted, 1, 10'000), 1);
    EXPECT_EQ(names().size(), 2U);
    addition.reset();
    EXPECT_TRUE(runUntil(queue, [&] { return names().size() == 1; }));
    EXPECT_EQ(readFile(folder + "/knock.wav"), before);
}

TEST_F(TheSoundFolder, MayBeDestroyedDuringACopy) {
    const auto addition = sounds->add(largeMusic("knock.wav"), [](const auto&) { ADD_FAILURE(); });
    ASSERT_TRUE(eventually([&] { return names().size() == 1; }));
    sounds.reset();
    runReady(queue);
    EXPECT_THAT(names(), IsEmpty());
}

}  // namespace
}  // namespace chimewerk
