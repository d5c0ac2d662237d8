// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/first_windows.h"

#include <gmock/gmock.h>

#include <set>

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Window = FirstWindows::Window;
using Owner = FirstWindows::Owner;
using Role = FirstWindows::Role;

/// Window numbers give the process: 10, 11, 12 ... belong to process 1. Windows x9 are panels, x7
/// are dialogs; windows x8 are gone before their facts can be read.
class TheFirstWindows : public testing::Test {
protected:
    /// Returns the processes that have their first window in this list.
    std::vector<Owner> update(const std::vector<Window>& list) {
        launched.clear();
        windows.update(list);
        return launched;
    }

    std::set<Owner> dead;
    std::vector<Owner> launched;
    FirstWindows windows{
        {.factsOf =
             [](const std::vector<Window>& asked) {
                 std::vector<FirstWindows::Facts> facts;
                 for (const Window window : asked) {
                     facts.push_back({.owner = window % 10 == 8 ? std::nullopt
                                                                : std::optional<Owner>(window / 10),
                                      .role = window % 10 == 9   ? Role::desktop
                                              : window % 10 == 7 ? Role::secondary
                                                                 : Role::application});
                 }
                 return facts;
             },
         .isAlive = [this](Owner owner) { return !dead.contains(owner); },
         .onFirstWindow = [this](Owner owner, Window) { launched.push_back(owner); }}};
};

TEST_F(TheFirstWindows, AreThoseOfProcessesThatHadNone) {
    windows.begin({10, 20});
    EXPECT_THAT(update({10, 20, 11}), IsEmpty());
    EXPECT_THAT(update({10, 20, 11, 30, 40, 31}), ElementsAre(3, 4));
    EXPECT_THAT(update({10}), IsEmpty());
    EXPECT_THAT(update({10, 32, 21}), IsEmpty());
}

TEST_F(TheFirstWindows, AreNotThoseOfAProcessThatKeptRunningWithoutAWindow) {
    windows.begin({});
    EXPECT_THAT(update({10}), ElementsAre(1));
    EXPECT_THAT(update({}), IsEmpty());
    EXPECT_THAT(update({10}), IsEmpty());
    dead.insert(1);
    EXPECT_THAT(update({}), IsEmpty());
    EXPECT_THAT(update({10}), ElementsAre(1));  // Another process with the same number.
}

TEST_F(TheFirstWindows, AreNotPanelsNorTheLaterWindowsOfAPanel) {
    windows.begin({19});
    EXPECT_THAT(update({19, 29}), IsEmpty());
    EXPECT_THAT(update({19, 29, 10, 20}), IsEmpty());
}

TEST_F(TheFirstWindows, MayComeAfterADialogButDialogsAreNone) {
    windows.begin({17});
    EXPECT_THAT(update({17, 27, 37}), IsEmpty());
    EXPECT_THAT(update({17, 10, 27, 20, 21}), ElementsAre(2));  // 1 was running before.
    EXPECT_THAT(update({30}), ElementsAre(3));
}

TEST_F(TheFirstWindows, AreNotThoseAlreadyGone) {
    windows.begin({10});
    EXPECT_THAT(update({10, 18, 28}), IsEmpty());
    EXPECT_THAT(update({20, 28}), ElementsAre(2));
    EXPECT_THAT(update({20}), IsEmpty());
}

TEST_F(TheFirstWindows, StartOverAfterABeginning) {
    windows.begin({10});
    windows.begin({20});
    EXPECT_THAT(update({20, 10}), ElementsAre(1));
}

TEST_F(TheFirstWindows, ForgetProcessesThatEnded) {
    windows.begin({});
    for (Window window = 10; window < 5010; window += 10) {
        EXPECT_THAT(update({window}), ElementsAre(window / 10));
        dead.insert(window / 10);
    }
    EXPECT_EQ(windows.known(), 1U);
}

}  // namespace
}  // namespace chimewerk
