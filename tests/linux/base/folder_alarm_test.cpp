// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/folder_alarm.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;

/// An alarm for home/trash/files and home/other, which are missing at first.
class AFolderAlarm : public testing::Test {
protected:
    static void touch(const fs::path& file) { std::ofstream{file} << "x"; }
    bool set() { return alarm.set({files, home / "other"}); }
    int runsIn(EpollMainQueue& from) {
        runReady(from);
        return std::exchange(runs, 0);
    }

    TemporaryFolder home;
    fs::path files = home.path() / "trash" / "files";
    fs::path elsewhere = home.path() / "elsewhere";
    EpollMainQueue queue;
    int runs = 0;
    FolderAlarm alarm{queue, [this] { ++runs; }};
};

TEST_F(AFolderAlarm, GoesOffForEachKindOfChange) {
    fs::create_directories(elsewhere);
    const std::vector<std::pair<const char*, std::function<void()>>> steps{
        {"a folder above appears", [&] { fs::create_directory(files.parent_path()); }},
        {"the folder appears", [&] { fs::create_directory(files); }},
        {"a name appears", [&] { touch(files / "one"); }},
        {"a name is replaced", [&] { fs::rename(files / "one", files / "two"); }},
        {"the times are set",
         [&] { fs::last_write_time(files, fs::file_time_type::clock::now()); }},
        {"a name disappears", [&] { fs::remove(files / "two"); }},
        {"the other folder appears", [&] { fs::create_directory(home / "other"); }},
        {"something appears there", [&] { touch(home.path() / "other" / "one"); }},
        {"the folder moves away", [&] { fs::rename(files, home / "moved"); }},
        {"a link comes in its place", [&] { fs::create_directory_symlink(elsewhere, files); }},
        {"a name behind the link", [&] { touch(elsewhere / "one"); }},
        {"the link is removed", [&] { fs::remove(files); }},
        {"everything is removed", [&] { fs::remove_all(files.parent_path()); }}};
    for (const auto& [what, happen] : steps) {
        // Removed watches may set it off once more.
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(set()) << what;
            runReady(queue);
        }
        EXPECT_TRUE(alarm.isSet()) << what;
        runs = 0;
        happen();
        EXPECT_EQ(runsIn(queue), 1) << what;
        EXPECT_FALSE(alarm.isSet()) << what;
    }
}

TEST_F(AFolderAlarm, GoesOffOnceWhateverHappensAndKeepsOneDescriptor) {
    fs::create_directories(files);
    set();
    const std::size_t descriptors = openDescriptors();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 100; ++i) {
            touch(files / std::to_string(100 * round + i));
            runs += runsIn(queue);
        }
        EXPECT_EQ(runsIn(queue), 1);
        set();
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    alarm.unset();
    touch(files / "more");
    EXPECT_EQ(runsIn(queue), 0);
}

TEST_F(AFolderAlarm, IsNotSetWhereSomethingMayChangeUnnoticed) {
    fs::create_directory_symlink(home / "nowhere", files.parent_path());
    EXPECT_FALSE(set()) << "the target of a link may appear";
    fs::remove(files.parent_path());
    fs::create_directories(files.parent_path());
    touch(files);
    EXPECT_FALSE(set()) << "not a folder";
    fs::remove(files);
    EXPECT_TRUE(set());
}

}  // namespace
}  // namespace chimewerk
