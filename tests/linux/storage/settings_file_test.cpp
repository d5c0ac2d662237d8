// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "linux/storage/atomic_file.h"
#include "support/small_disk.h"
#include "tools/files/temporary_folder.h"
#include "tools/files/text_file.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;
using Finding = SettingsFile::Finding;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class TheSettingsFile : public testing::Test {
protected:
    static std::vector<std::string> namesIn(const fs::path& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder)) {
            names.push_back(entry.path().filename());
        }
        std::ranges::sort(names);
        return names;
    }

    TemporaryFolder home;
    fs::path folder = home.path() / "config";
    fs::path path = folder / "s.json";
    SettingsFile file{path.string()};
};

TEST_F(TheSettingsFile, IsAbsentUntilItIsWrittenAndKeepsItsPermissions) {
    EXPECT_EQ(file.read().finding, Finding::absent);
    EXPECT_TRUE(file.replace("one"));
    EXPECT_EQ(file.read().text, "one");
    EXPECT_TRUE(file.replace(""));
    EXPECT_EQ(file.read().finding, Finding::text);
    EXPECT_EQ(file.read().text, "");
    EXPECT_THAT(namesIn(folder), ElementsAre("s.json"));
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms{0700});
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0600});
    fs::permissions(path, fs::perms{0640});
    ASSERT_TRUE(file.replace("two"));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0640});
}

TEST_F(TheSettingsFile, StaysALinkWhoseTargetIsReplaced) {
    const fs::path elsewhere = home.path() / "elsewhere" / "real.json";
    fs::create_directories(folder);
    fs::create_symlink("b", path);
    fs::create_symlink("../elsewhere/real.json", folder / "b");
    EXPECT_EQ(file.read().finding, Finding::absent);
    EXPECT_TRUE(file.replace("one"));
    EXPECT_EQ(readFile(elsewhere), "one");

    file.setAside();
    EXPECT_TRUE(file.replace("two"));
    EXPECT_EQ(readFile(elsewhere), "two");
    EXPECT_THAT(namesIn(elsewhere.parent_path()), ElementsAre("real.json", "real.json.damaged-1"));
    EXPECT_TRUE(fs::is_symlink(path) && fs::is_symlink(folder / "b"));
}

TEST_F(TheSettingsFile, IsSetAsideOrCopiedUnderANewNameEachTime) {
    file.setAside();
    file.copyAsideFirst();
    EXPECT_TRUE(file.replace("one")) << "there was nothing to keep";
    file.setAside();
    ASSERT_TRUE(file.replace("two"));
    file.copyAsideFirst();
    {
        const SmallDisk disk(2);
        EXPECT_FALSE(file.replace("3"));
        EXPECT_THAT(namesIn(folder), ElementsAre("s.json", "s.json.damaged-1"));
    }
    for (const char* const text : {"three", "four"}) {
        EXPECT_TRUE(file.replace(text));
        EXPECT_THAT(namesIn(folder), ElementsAre("s.json", "s.json.damaged-1", "s.json.damaged-2"));
    }
    EXPECT_EQ(readFile(path.string() + ".damaged-1"), "one");
    EXPECT_EQ(readFile(path.string() + ".damaged-2"), "two");
}

TEST_F(TheSettingsFile, SetsAsidePipesFoldersAndDevicesWithoutWaitingForThem) {
    struct Case {
        const char* what;
        std::function<void()> make;
    };
    for (const Case& c :
         {Case{"folder", [&] { fs::create_directories(path / "inside"); }},
          Case{"pipe", [&] { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
          Case{"device", [&] { fs::create_symlink("/dev/null", path); }},
          Case{"link to a folder", [&] { fs::create_directory_symlink(home.path(), path); }},
          Case{"circle", [&] { fs::create_symlink("s.json", path); }}}) {
        SCOPED_TRACE(c.what);
        fs::remove_all(folder);
        fs::create_directories(folder);
        c.make();
        EXPECT_EQ(file.read().finding, Finding::unreadable);
        file.setAside();
        EXPECT_TRUE(file.replace("new"));
        EXPECT_EQ(readFile(path), "new");
        EXPECT_THAT(namesIn(folder), ElementsAre("s.json", "s.json.damaged-1"));
    }
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    // Later, a folder takes its place.
    fs::remove(path);
    fs::create_directories(path / "inside");
    EXPECT_TRUE(file.replace("new"));
    EXPECT_TRUE(fs::exists(path.string() + ".damaged-2/inside"));
}

TEST_F(TheSettingsFile, IsUnchangedWhenTheDiskIsFull) {
    ASSERT_TRUE(file.replace("old"));
    {
        const SmallDisk disk(1000);
        EXPECT_FALSE(file.replace(std::string(1001, 'x')));
        EXPECT_EQ(readFile(path), "old");
        EXPECT_THAT(namesIn(folder), ElementsAre("s.json"));
        EXPECT_TRUE(file.replace(std::string(1000, 'y')));
    }
    EXPECT_TRUE(file.replace(std::string(1001, 'x')));
}

TEST_F(TheSettingsFile, IsNeverOverwrittenWhenItCouldNotBeSetAside) {
    // Its name is so long that nothing can be appended.
    const fs::path longest = home.path() / std::string(246, 'n');
    SettingsFile stuck(longest.string());
    ASSERT_TRUE(stuck.replace("damaged"));
    stuck.setAside();
    EXPECT_FALSE(stuck.replace("new"));
    EXPECT_EQ(readFile(longest), "damaged");
    fs::remove(longest);
    EXPECT_TRUE(stuck.replace("new"));
}

TEST_F(TheSettingsFile, IsNotWrittenIfItsFolderCannotBeMade) {
    std::ofstream(folder) << "a file";
    EXPECT_EQ(file.read().finding, Finding::absent);
    EXPECT_FALSE(file.replace("new"));
    fs::remove(folder);
    EXPECT_TRUE(file.replace("new"));

    SettingsFile nowhere("");
    EXPECT_EQ(nowhere.read().finding, Finding::absent);
    EXPECT_TRUE(nowhere.replace("new"));
}

TEST_F(TheSettingsFile, RemovesOnlyTheLeftoversOfKilledPrograms) {
    const std::string leftover = ".chimewerk-unfinished-abcdef";
    const std::string subfolder = ".chimewerk-unfinished-folder";
    fs::create_directories(folder / subfolder);
    for (const std::string& name : {leftover, std::string("s.json.backup")}) {
        std::ofstream(folder / name) << "x";
    }
    std::error_code error;
    const AtomicFile another(folder.string(), error);
    EXPECT_FALSE(fs::exists(folder / leftover));
    EXPECT_TRUE(file.replace("new"));
    EXPECT_THAT(namesIn(folder),
                UnorderedElementsAre(subfolder, fs::path(another.path()).filename().string(),
                                     "s.json", "s.json.backup"))
        << "another program is writing its file";
}

}  // namespace
}  // namespace chimewerk
