// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/screenshot_monitor.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_folder_source.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

constexpr const char* kDesktop = "/home/someone/Desktop";
constexpr const char* kPictures = "/home/someone/Pictures";
constexpr const char* kShots = "/home/someone/Pictures/Bildschirmfotos";
constexpr const char* kShot = "Screenshot From 2024-05-01 12-00-00.png";

class TheScreenshotMonitor : public testing::Test {
protected:
    TheScreenshotMonitor() {
        monitor.onScreenshot = [this] { ++shots; };
    }
    /// Waits until pending checks have run and returns the screenshots since the last call.
    int settle() {
        queue.advance(Seconds{1.6});
        return std::exchange(shots, 0);
    }

    VirtualMainQueue queue;
    FakeFolderSource folders;
    ScreenshotMonitor monitor{queue,
                              folders,
                              {{.path = kDesktop},
                               {.path = kPictures, .beginnings = {"Screenshot", "Bildschirmfoto"}},
                               {.path = kShots, .holdsOnlyShots = true},
                               {.path = kDesktop}}};
    int shots = 0;
};

TEST_F(TheScreenshotMonitor, RecognisesAScreenshotByItsNameAndFolder) {
    struct Case {
        const char* name;
        int fires;
        const char* folder = kDesktop;
    };
    monitor.start();
    for (const Case& c :
         {Case{kShot, 1}, Case{"Screenshot_20240501_120000.png", 1}, Case{"Screenshot.png", 1},
          Case{"screenshot.png", 0}, Case{"Screenshot.PNG", 0}, Case{"Screenshot 1.jpg", 0},
          Case{"My Screenshot.png", 0}, Case{"Screenshot.png.part", 0}, Case{"Screensho.png", 0},
          Case{".png", 0}, Case{"Screenshot", 0}, Case{"Screenshots of.png", 1},
          Case{"Bildschirmfoto vom 2024-05-01.png", 0},
          Case{"Bildschirmfoto vom 2024-05-01.png", 1, kPictures}, Case{"Urlaub.png", 0, kPictures},
          Case{"2024-05-01.png", 1, kShots}, Case{"2024-05-01.webm", 0, kShots}}) {
        folders.add(c.folder, c.name);
        EXPECT_EQ(settle(), c.fires) << c.folder << "/" << c.name;
    }
}

TEST_F(TheScreenshotMonitor, FiresOncePerBurstOneLatencyAfterItsBeginning) {
    monitor.start();
    folders.add(kDesktop, "Screenshot 1.png");
    queue.advance(Seconds{1.4});
    folders.add(kDesktop, "Screenshot 2.png");
    folders.add(kDesktop, "Screenshot 3.png");
    EXPECT_EQ(shots, 0);
    queue.advance(Seconds{0.1});
    EXPECT_EQ(shots, 1);
    EXPECT_EQ(settle(), 1);
}

TEST_F(TheScreenshotMonitor, NeverLosesTheLastChangeOfAnEndlessBurst) {
    monitor.start();
    for (int i = 0; i < 500; ++i) {
        folders.add(kDesktop, "noise" + std::to_string(i));
        queue.advance(Seconds{0.1});
    }
    folders.add(kDesktop, kShot);
    EXPECT_EQ(settle(), 1);
    EXPECT_LE(folders.listings, 500 / 15 + 4);
}

TEST_F(TheScreenshotMonitor, TakesFilesPresentAtTheStartAsKnown) {
    folders.add(kDesktop, kShot);
    monitor.start();
    folders.add(kDesktop, "unrelated");
    EXPECT_EQ(settle(), 0);
    monitor.stop();
    folders.add(kDesktop, "Screenshot while stopped.png");
    monitor.start();
    folders.add(kDesktop, "unrelated too");
    EXPECT_EQ(settle(), 0);
}

TEST_F(TheScreenshotMonitor, CountsARenamedAndARecreatedScreenshotAsNew) {
    folders.add(kDesktop, kShot);
    monitor.start();
    folders.remove(kDesktop, kShot);
    folders.add(kDesktop, "Screenshot renamed.png");
    EXPECT_EQ(settle(), 1);
    folders.remove(kDesktop, "Screenshot renamed.png");
    EXPECT_EQ(settle(), 0);
    folders.add(kDesktop, "Screenshot renamed.png");
    EXPECT_EQ(settle(), 1);
}

TEST_F(TheScreenshotMonitor, ChecksEachFolderSeparatelyAndOnceEvenIfNamedTwice) {
    folders.add(kPictures, kShot);
    monitor.start();
    EXPECT_EQ(folders.streams(), 3U);
    folders.add(kDesktop, "Screenshot 1.png");
    folders.add(kPictures, "Screenshot 1.png");
    EXPECT_EQ(settle(), 2);
}

TEST_F(TheScreenshotMonitor, TakesAMovedScreenshotForNoNewOne) {
    folders.add(kShots, kShot);
    monitor.start();
    for (const auto& [from, to] : {std::pair(kShots, kDesktop), {kDesktop, kPictures}}) {
        folders.move(from, to, kShot);
        EXPECT_EQ(settle(), 0) << "to " << to;
    }
    folders.remove(kPictures, kShot);
    settle();
    folders.add(kDesktop, kShot);
    EXPECT_EQ(settle(), 1) << "another file of the same name";
}

TEST_F(TheScreenshotMonitor, ListsAFolderOnlyWhenTheFolderItselfHasChanged) {
    monitor.start();
    const int before = folders.listings;
    folders.add(kPictures, kShot);
    EXPECT_EQ(settle(), 1);
    EXPECT_EQ(folders.listings, before);
    folders.putBack(kPictures, {{"Screenshot 2.png", 77}});
    EXPECT_EQ(settle(), 1);
    EXPECT_EQ(folders.listings, before + 1);
}

TEST_F(TheScreenshotMonitor, FiresForNewFilesWhenAFolderCanBeListedAgain) {
    folders.add(kDesktop, kShot);
    monitor.start();
    auto contents = folders.makeUnlistable(kDesktop);
    EXPECT_EQ(settle(), 0);
    folders.putBack(kDesktop, std::move(contents));
    EXPECT_EQ(settle(), 1);
}

TEST_F(TheScreenshotMonitor, ChecksWheneverItIsAskedTo) {
    folders.canWatch = false;
    monitor.start();
    folders.add(kDesktop, kShot);
    EXPECT_EQ(settle(), 0);
    monitor.checkForNew();
    monitor.checkForNew();
    EXPECT_EQ(shots, 1);
}

TEST_F(TheScreenshotMonitor, CancelsAPendingCheckWhenStopped) {
    monitor.stop();  // Before any start.
    monitor.start();
    folders.add(kDesktop, kShot);
    monitor.stop();
    folders.add(kDesktop, "Screenshot 1.png");
    EXPECT_EQ(settle(), 0);
    EXPECT_EQ(folders.streams(), 0U);
}

}  // namespace
}  // namespace chimewerk
