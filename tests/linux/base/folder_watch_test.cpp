// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/folder_watch.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <set>

#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;

/// Watches home/pictures/folder.
class AFolderWatch : public testing::Test {
protected:
    AFolderWatch() { fs::create_directories(folder); }

    void watch(FolderWatch::Report report = FolderWatch::Report::names) {
        watched.emplace(
            queue, folder.string(),
            [this](std::string_view name) { reported.insert(std::string(name)); }, report,
            Seconds{0.1});
    }
    static void touch(const fs::path& file) { std::ofstream{file} << "x"; }
    /// Returns whether a new file in the folder is reported, ignoring other reports.
    bool reportsNewFile() {
        const std::string name = "probe" + std::to_string(++probes);
        reported.clear();
        touch(folder / name);
        return wasReported(name);
    }
    /// Returns whether this was reported since the last call. The kernel reports at once.
    bool wasReported(const std::string& name) {
        runReady(queue);
        return reported.erase(name) > 0;
    }

    TemporaryFolder home;
    fs::path folder = home.path() / "pictures" / "folder";
    fs::path above = folder.parent_path();
    EpollMainQueue queue;
    std::optional<FolderWatch> watched;
    std::set<std::string> reported;
    int probes = 0;
};

TEST_F(AFolderWatch, ReportsNamesDirectlyInTheFolder) {
    fs::create_directory(folder / "sub");
    touch(folder / "old");
    touch(home.path() / "elsewhere");
    watch();
    touch(folder / "sub" / "inside");
    touch(folder / "old");  // Only written to: no name has changed.
    fs::permissions(folder / "old", fs::perms::owner_read);
    touch(folder / "new");
    fs::rename(home.path() / "elsewhere", folder / "moved in");
    fs::remove(folder / "old");
    runReady(queue);
    EXPECT_EQ(reported, (std::set<std::string>{"new", "moved in", "old"}));
}

TEST_F(AFolderWatch, ReportsPermissionsWhenAskedTo) {
    touch(folder / "device");
    watch(FolderWatch::Report::namesAndPermissions);
    fs::permissions(folder / "device", fs::perms::owner_read);
    EXPECT_TRUE(wasReported("device"));
}

TEST_F(AFolderWatch, FollowsTheFolderThroughRemovalReplacementAndReturn) {
    const fs::path other = home.path() / "other";
    fs::create_directories(other / "folder");
    struct Case {
        const char* what;
        std::function<void()> happens;
    };
    const Case cases[] = {
        {"deleted and made again",
         [&] {
             fs::remove_all(folder);
             fs::create_directory(folder);
         }},
        {"deleted, and made again once that is known",
         [&] {
             fs::remove_all(folder);
             ASSERT_TRUE(wasReported(""));
             fs::create_directory(folder);
         }},
        {"replaced by another",
         [&] {
             fs::rename(folder, above / "aside");
             fs::rename(other / "folder", folder);
         }},
        {"replaced by a link",
         [&] {
             fs::remove_all(folder);
             fs::create_directory_symlink(other, folder);
         }},
        {"a link pointed elsewhere",
         [&] {
             fs::create_directory_symlink(above / "aside", above / "link");
             fs::rename(above / "link", folder);
         }},
        {"deleted with the folders above",
         [&] {
             fs::remove_all(above);
             ASSERT_TRUE(wasReported(""));
             fs::create_directory(above);
             ASSERT_TRUE(wasReported(""));
             fs::create_directory(folder);
         }},
        {"moved away with the folder above, and made again",
         [&] {
             fs::rename(above, home.path() / "moved");
             fs::create_directories(folder);
         }},
        {"become a file, and a folder again",
         [&] {
             fs::remove_all(folder);
             touch(folder);
             ASSERT_TRUE(wasReported(""));
             fs::remove(folder);
             fs::create_directory(folder);
         }},
        {"a link to the folder above",
         [&] {
             fs::remove_all(folder);
             fs::create_directory_symlink(".", folder);
         }},
    };
    watch();
    const std::size_t before = openDescriptors();
    for (const Case& c : cases) {
        c.happens();
        EXPECT_TRUE(wasReported("")) << c.what;
        EXPECT_TRUE(reportsNewFile()) << c.what;
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(AFolderWatch, WaitsForAMissingFolderWithoutWakingUp) {
    fs::remove_all(above);
    watch();
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.2}), 0);
    fs::create_directories(folder);
    EXPECT_TRUE(wasReported(""));
    EXPECT_TRUE(reportsNewFile());
}

TEST_F(AFolderWatch, RetriesWhereNothingReportsChanges) {
    const fs::path target = home.path() / "target";
    fs::remove_all(folder);
    fs::create_directory_symlink(target, folder);
    watch();
    fs::create_directory(target);  // Behind a dangling link.
    EXPECT_TRUE(runUntil(queue, [&] { return reported.contains(""); }));
    EXPECT_TRUE(reportsNewFile());
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.3}), 0);  // It no longer tries.
}

TEST_F(AFolderWatch, LosesNothingWhenTheKernelQueueOverflows) {
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    int most = 0;
    ASSERT_TRUE(limit >> most);
    watch();
    touch(above / "file");
    for (int i = 0; i <= most / 2; ++i) {
        // Two events each, of different kinds so that the kernel does not merge them.
        ASSERT_EQ(link((above / "file").c_str(), (folder / "burst").c_str()), 0);
        ASSERT_EQ(unlink((folder / "burst").c_str()), 0);
    }
    EXPECT_TRUE(wasReported(""));
    EXPECT_TRUE(reportsNewFile());
}

}  // namespace
}  // namespace chimewerk
