#include "linux/storage/xdg_sound_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "linux/base/epoll_main_queue.h"
#include "support/run_queue.h"
#include "support/small_disk.h"
#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/eventually.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
using Kind = SoundFolder::Outcome::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

class TheSoundFolder : public testing::Test {
protected:
    /// Makes a sound file of this length in the user's music and returns its path.
    std::string music(const std::string& name, double seconds = 0.1) const {
        fs::create_directories(home / "music");
        writeSoundFile(home / ("music/" + name), sine(440, 0.5, seconds));
        return home / ("music/" + name);
    }
    /// A sound of this size that takes no room and some time to copy.
    std::string largeMusic(const std::string& name,
                           std::uintmax_t size = std::uintmax_t{600} << 20) const {
        std::string path = music(name);
        fs::resize_file(path, size);
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        for (const auto& [place, header] : {std::pair{4, 8}, {40, 44}}) {
            const auto length =
                static_cast<std::uint32_t>(size) - static_cast<std::uint32_t>(header);
            file.seekp(place).write(reinterpret_cast<const char*>(&length), sizeof length);
        }
        return path;
    }
    SoundFolder::Outcome load(const std::string& path) {
        std::optional<SoundFolder::Outcome> outcome;
        const auto addition = sounds->add(path, [&](const auto& result) { outcome = result; });
        EXPECT_FALSE(outcome) << "told too early";
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
        std::sort(found.begin(), found.end());
        return found;
    }
    static std::string bytesOf(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    TemporaryFolder home;
    const std::string folder = home / "data/Chimewerk";
    EpollMainQueue queue;
    Decoders decoders{CHIMEWERK_MODULE_DIR};
    std::optional<XdgSoundFolder> sounds{std::in_place, queue, decoders, home / "data"};
};

TEST_F(TheSoundFolder, TakesACopyOfAFileUnderItsName) {
    for (const std::string& name :
         {std::string("knock.wav"), std::string("a b\n.WAV"), std::string("\xff\xfe.mp3"),
          std::string(".hidden"), std::string("Ä📁.aiff"), std::string(255, 'n')}) {
        SCOPED_TRACE(name);
        const std::string path = music(name);
        const auto outcome = load(path);
        EXPECT_EQ(outcome.kind, Kind::added) << outcome.error;
        EXPECT_EQ(outcome.path, folder + "/" + name);
        EXPECT_EQ(bytesOf(outcome.path), bytesOf(path));
        EXPECT_THAT(names(), ElementsAre(name));
        fs::remove(outcome.path);
    }
}

TEST_F(TheSoundFolder, KeepsTheLaterOfTwoFilesOfTheSameName) {
    load(music("knock.wav", 0.1));
    const std::string later = music("knock.wav", 0.2);
    EXPECT_EQ(load(later).kind, Kind::added);
    EXPECT_EQ(bytesOf(folder + "/knock.wav"), bytesOf(later));
    EXPECT_THAT(names(), ElementsAre("knock.wav"));
}

TEST_F(TheSoundFolder, UsesAFileThatLiesThereAlreadyWhereItIs) {
    const std::string there = load(music("knock.wav")).path;
    const std::string bytes = bytesOf(there);
    fs::create_directories(home / "links");
    fs::create_symlink(there, home / "links/knock.wav");
    fs::create_directories(home / "hard");
    fs::create_hard_link(there, home / "hard/knock.wav");
    fs::create_directory_symlink(folder, home / "folder");
    struct stat before {};
    ASSERT_EQ(stat(there.c_str(), &before), 0);
    for (const std::string& path : {there, home / "links/knock.wav", home / "hard/knock.wav",
                                    home / "folder/knock.wav", fs::relative(there).string()}) {
        const auto outcome = load(path);
        EXPECT_EQ(outcome.kind, Kind::added) << path;
        EXPECT_EQ(outcome.path, there) << path;
        struct stat after {};
        ASSERT_EQ(stat(there.c_str(), &after), 0) << path;
        EXPECT_EQ(after.st_ino, before.st_ino) << path;
    }
    EXPECT_EQ(bytesOf(there), bytes);

    const std::string text = folder + "/text.wav";
    std::ofstream(text) << "the user's";
    EXPECT_EQ(load(text).kind, Kind::notASound);
    EXPECT_EQ(bytesOf(text), "the user's") << "it is no copy of ours";
}

TEST_F(TheSoundFolder, NeverWritesThroughALink) {
    const std::string own = music("own.wav", 0.3);
    const std::string bytes = bytesOf(own);
    fs::create_directories(folder);
    fs::create_symlink(own, folder + "/knock.wav");
    fs::create_symlink(home / "nowhere", folder + "/pop.wav");
    for (const std::string& name : {std::string("knock.wav"), std::string("pop.wav")}) {
        EXPECT_EQ(load(music(name)).kind, Kind::added) << name;
        EXPECT_FALSE(fs::is_symlink(folder + "/" + name)) << name;
    }
    EXPECT_EQ(bytesOf(own), bytes);
    EXPECT_FALSE(fs::exists(home / "nowhere"));
}

TEST_F(TheSoundFolder, IsAsItWasWhenAFileCannotBeCopied) {
    const std::string before = bytesOf(load(music("knock.wav", 0.1)).path);
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
        EXPECT_EQ(outcome.path, "");
        EXPECT_EQ(bytesOf(folder + "/knock.wav"), before);
        EXPECT_THAT(names(), ElementsAre("knock.wav", "taken.wav"));
    }
}

TEST_F(TheSoundFolder, KeepsThePreviousSoundWhenTheDiskIsFull) {
    const std::string before = bytesOf(load(music("knock.wav", 0.1)).path);
    const std::string later = music("knock.wav", 5);
    const SmallDisk disk(100'000);
    const auto outcome = load(later);
    EXPECT_EQ(outcome.kind, Kind::notCopied);
    EXPECT_EQ(outcome.error, std::strerror(EFBIG));
    EXPECT_EQ(bytesOf(folder + "/knock.wav"), before);
    EXPECT_THAT(names(), ElementsAre("knock.wav"));
}

TEST_F(TheSoundFolder, TellsWhenItCannotBeMade) {
    std::ofstream(home / "data") << "in the way";
    EXPECT_EQ(load(music("knock.wav")).kind, Kind::notCopied);
    sounds.emplace(queue, decoders, "");
    const auto outcome = load(music("knock.wav"));
    EXPECT_EQ(outcome.kind, Kind::notCopied);
    EXPECT_EQ(outcome.error, std::strerror(ENOENT));
}

TEST_F(TheSoundFolder, LeavesNothingOfAFileThatIsNoSound) {
    const std::string before = bytesOf(load(music("knock.wav")).path);
    const std::string whole = bytesOf(music("knock.wav", 1));
    for (const std::string& bytes :
         {std::string("no sound"), std::string(), whole.substr(0, 5000)}) {
        std::ofstream(home / "music/knock.wav", std::ios::binary) << bytes;
        EXPECT_EQ(load(home / "music/knock.wav").kind, Kind::notASound) << bytes.size();
        EXPECT_EQ(bytesOf(folder + "/knock.wav"), before) << bytes.size();
        EXPECT_THAT(names(), ElementsAre("knock.wav")) << bytes.size();
    }
}

TEST_F(TheSoundFolder, IsAsItWasWhenACopyIsGivenUp) {
    const std::string before = bytesOf(load(music("knock.wav")).path);
    auto addition =
        sounds->add(largeMusic("knock.wav"), [](const auto&) { ADD_FAILURE() << "told"; });
    ASSERT_TRUE(eventually([&] { return names().size() == 2; }));
    // Another program on the same folder takes it for no leftover.
    const XdgSoundFolder another(queue, decoders, home / "data");
    EXPECT_EQ(names().size(), 2U);
    addition.reset();
    EXPECT_TRUE(runUntil(queue, [&] { return names().size() == 1; }));
    EXPECT_EQ(bytesOf(folder + "/knock.wav"), before);
    // The next one is not kept waiting, and one that is done when it is given up changes nothing either.
    addition = sounds->add(music("knock.wav", 0.3), [](const auto&) { ADD_FAILURE() << "told"; });
    pollfd posted{.fd = queue.descriptor(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&posted, 1, 10'000), 1);
    EXPECT_EQ(names().size(), 2U);
    addition.reset();
    EXPECT_TRUE(runUntil(queue, [&] { return names().size() == 1; }));
    EXPECT_EQ(bytesOf(folder + "/knock.wav"), before);
}

TEST_F(TheSoundFolder, EndsWithTheProgramInTheMiddleOfACopy) {
    const auto addition =
        sounds->add(largeMusic("knock.wav"), [](const auto&) { ADD_FAILURE() << "told"; });
    ASSERT_TRUE(eventually([&] { return names().size() == 1; }));
    sounds.reset();
    runReady(queue);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(TheSoundFolder, HoldsAWholeSoundAndNothingElseAfterAKilledCopy) {
    const std::string paths[] = {music("knock.wav", 3), home / "other/knock.wav"};
    fs::create_directories(home / "other");
    writeSoundFile(paths[1], sine(440, 0.5, 5));
    const std::string whole[] = {bytesOf(paths[0]), bytesOf(paths[1])};
    load(paths[0]);
    sounds.reset();
    int leftovers = 0;
    for (int kill = 0; kill < 12; ++kill) {
        const pid_t program = fork();
        if (program == 0) {
            sounds.emplace(queue, decoders, home / "data");
            for (int turn = 0; load(paths[turn % 2]).kind == Kind::added; ++turn) {
            }
            _exit(1);
        }
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (names().size() < 2 && std::chrono::steady_clock::now() < deadline) {
        }
        std::this_thread::sleep_for(std::chrono::microseconds(600 * kill));
        ::kill(program, SIGKILL);
        waitpid(program, nullptr, 0);
        leftovers += static_cast<int>(names().size()) - 1;
        const std::string left = bytesOf(folder + "/knock.wav");
        EXPECT_TRUE(left == whole[0] || left == whole[1]) << left.size();
        const XdgSoundFolder next(queue, decoders, home / "data");
        EXPECT_THAT(names(), ElementsAre("knock.wav"));
    }
    EXPECT_GT(leftovers, 0) << "no copy was cut off";
}

}  // namespace
}  // namespace chimewerk
