// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/xdg_trash_source.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>

#include "linux/base/epoll_main_queue.h"
#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "support/virtual_main_queue.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

namespace fs = std::filesystem;

class TheTrashFolder : public testing::Test {
protected:
    std::optional<std::int64_t> count() { return countIn(trash); }
    std::optional<std::int64_t> countIn(XdgTrashSource& source) {
        std::optional<std::int64_t> result;
        bool answered = false;
        source.countItems([&](std::optional<std::int64_t> items) {
            result = items;
            answered = true;
        });
        EXPECT_TRUE(runUntil(queue, [&] { return answered; }));
        return result;
    }
    void add(const std::string& name) const { std::ofstream(files / name) << "x"; }

    TemporaryFolder home{"/dev/shm"};  // In memory, because thousands of files are slow on a disk.
    fs::path files = home.path() / "Trash" / "files";
    EpollMainQueue queue;
    XdgTrashSource trash{queue, home.path().string(), "/dev/null"};
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

TEST_F(TheTrashFolder, MayBeALinkAndMayDisappear) {
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

/// The processor time of this thread, and so of the main queue.
Seconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

TEST_F(TheTrashFolder, TakesTenThousandFilesWithoutHoldingUpTheMainQueue) {
    constexpr int kFiles = 10'000;
    constexpr int kSteps = 20;
    VirtualMainQueue time;
    TrashMonitor monitor(time, time, trash);
    int adds = 0;
    int emptied = 0;
    monitor.onAdd = [&] { ++adds; };
    monitor.onEmpty = [&] { ++emptied; };
    fs::create_directories(files);
    monitor.start();
    count();
    const std::size_t descriptors = openDescriptors();
    Seconds busy{0};
    const auto pass = [&](double seconds) {
        const Seconds begin = processorTime();
        time.advance(Seconds{seconds});
        count();  // After that of the monitor, which has then decided.
        busy += processorTime() - begin;
    };
    for (int step = 0; step < kSteps; ++step) {
        for (int i = 0; i < kFiles / kSteps; ++i) {
            std::ofstream(files / std::to_string(step * kFiles + i));
        }
        pass(0.25);
    }
    EXPECT_EQ(count(), kFiles);
    EXPECT_GE(adds, 3);
    EXPECT_LE(adds, 5);  // One a second.
    EXPECT_EQ(emptied, 0);

    const Seconds begin = processorTime();
    EXPECT_EQ(std::distance(fs::directory_iterator(files), {}), kFiles);
    const Seconds once = processorTime() - begin;
    EXPECT_LT(busy, once);
    EXPECT_EQ(openDescriptors(), descriptors);

    fs::remove_all(files);
    const int before = adds;
    pass(3);
    EXPECT_EQ(adds, before);
    EXPECT_EQ(emptied, 1);
}

TEST_F(TheTrashFolder, IsReadAtEachIntervalWhereTheMountTableReportsNoChanges) {
    trash.modificationTime();
    EXPECT_FALSE(trash.announcesChanges());
}

TEST_F(TheTrashFolder, IsAlsoThatOfEachDisk) {
    const TemporaryFolder media;
    const std::string stick = media / "USB STICK";
    fs::create_directory(stick);
    // Mounts a disk for this process alone, in memory.
    if (unshare(CLONE_NEWNS) != 0 ||
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        GTEST_SKIP() << "This user may not mount; root may.";
    }
    XdgTrashSource trashes(queue, home.path().string());
    fs::create_directories(files);
    add("one");
    bool announced = false;
    trashes.onAnnouncement([&] { announced = true; });
    // Each is preceded by a reading, as in a poll.
    const auto announces = [&](const std::function<void()>& change) {
        runReady(queue);
        trashes.volumesChanged();
        trashes.modificationTime();
        announced = false;
        EXPECT_TRUE(trashes.announcesChanges());
        change();
        return runUntil(queue, [&] { return announced; });
    };
    EXPECT_FALSE(trashes.volumesChanged());
    const auto before = countIn(trashes);
    EXPECT_TRUE(announces([&] { add("one more"); }));
    EXPECT_TRUE(announces([&] { fs::remove(files / "one more"); }));
    EXPECT_TRUE(
        announces([&] { ASSERT_EQ(mount("/dev/sdb1", stick.c_str(), "tmpfs", 0, nullptr), 0); }));
    EXPECT_TRUE(trashes.volumesChanged());
    EXPECT_FALSE(trashes.volumesChanged());
    const double empty = trashes.modificationTime();
    const fs::path there = stick + "/.Trash-" + std::to_string(getuid()) + "/files";
    EXPECT_TRUE(announces([&] { fs::create_directories(there); }));
    EXPECT_TRUE(announces([&] { std::ofstream(there / "two") << "x"; }));
    EXPECT_NE(trashes.modificationTime(), empty);
    EXPECT_EQ(trashes.report().mechanism, files.parent_path().string() + " and 1 on disks");
    EXPECT_EQ(countIn(trashes), *before + 1);
    EXPECT_TRUE(announces([&] { ASSERT_EQ(umount(stick.c_str()), 0); }));
    EXPECT_TRUE(trashes.volumesChanged());
    EXPECT_EQ(countIn(trashes), before);
}

TEST(TheMountTable, ListsDisksThatCanBeWrittenTo) {
    EXPECT_EQ(writableDisksIn(
                  "29 1 254:0 / / rw,relatime shared:1 - ext4 /dev/mapper/vg-root rw\n"
                  "24 29 0:22 / /proc rw,nosuid shared:12 - proc proc rw\n"
                  "31 29 0:26 / /tmp rw,nosuid shared:14 - tmpfs tmpfs rw,size=8G\n"
                  "90 29 7:1 / /snap/core/1 ro,nodev shared:50 - squashfs /dev/loop1 ro\n"
                  "95 29 8:17 / /media/ann/USB\\040STICK rw,nosuid shared:51 - vfat /dev/sdb1 rw\n"
                  "96 29 8:33 / /media/ann/disk rw - fuseblk /dev/sdc1 rw,allow_other\n"
                  "97 29 0:51 / /tank rw shared:52 - zfs tank rw,xattr\n"
                  "98 29 0:60 / /net rw shared:53 - nfs4 server:/export rw,vers=4.2\n"
                  "cut off here 1:2"),
              (std::vector<std::string>{"/", "/media/ann/USB STICK", "/media/ann/disk", "/tank"}));
}

TEST_F(TheTrashFolder, CannotBeCountedWhenItIsNotAFolder) {
    fs::create_directories(files.parent_path());
    std::ofstream(files) << "x";
    EXPECT_EQ(count(), std::nullopt);
}

}  // namespace
}  // namespace chimewerk
