// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/xdg_trash_source.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "linux/base/epoll_main_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;

class TheTrashFolder : public testing::Test {
protected:
    std::optional<std::int64_t> count() {
        std::optional<std::int64_t> result;
        trash.countItems([&](std::optional<std::int64_t> items) {
            result = items;
            queue.quit();
        });
        queue.run();
        return result;
    }
    void add(const std::string& name) const { std::ofstream(files / name) << "x"; }

    TemporaryFolder home;
    fs::path files = home.path() / "Trash" / "files";
    EpollMainQueue queue;
    XdgTrashSource trash{queue, home.path().string()};
};

TEST_F(TheTrashFolder, IsEmptyAndWithoutATimeBeforeTheFirstUse) {
    EXPECT_EQ(trash.modificationTime(), 0.0);
    EXPECT_EQ(count(), 0);
}

TEST_F(TheTrashFolder, ChangesItsTimeWithEachItemAndCountsHiddenOnesAndFolders) {
    fs::create_directories(files);
    const double empty = trash.modificationTime();
    EXPECT_GT(empty, 1e9);
    fs::create_directory(files / "folder");
    add("folder/inside");
    add(".hidden");
    add("..three dots");
    fs::create_symlink("nowhere", files / "dangling");
    fs::last_write_time(files, fs::last_write_time(files) + std::chrono::milliseconds(1));
    EXPECT_NE(trash.modificationTime(), empty);
    EXPECT_EQ(count(), 4);
}

TEST_F(TheTrashFolder, MayBeALinkAndMayVanish) {
    const fs::path elsewhere = home.path() / "elsewhere";
    fs::create_directories(elsewhere);
    fs::create_directories(files.parent_path());
    fs::create_directory_symlink(elsewhere, files);
    add("one");
    EXPECT_EQ(count(), 1);
    fs::remove_all(elsewhere);
    EXPECT_EQ(trash.modificationTime(), 0.0);
    EXPECT_EQ(count(), 0);
}

TEST_F(TheTrashFolder, CannotBeCountedWhenItIsNotAFolder) {
    fs::create_directories(files.parent_path());
    std::ofstream(files) << "x";
    EXPECT_EQ(count(), std::nullopt);
}

}  // namespace
}  // namespace chimewerk
