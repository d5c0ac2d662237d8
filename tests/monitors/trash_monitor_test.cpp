// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/trash_monitor.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_sources.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

/// A monitor that was started with `items` in the trash. Appends the calls to `fired`: '+' for an
/// add, '0' for an emptying.
class TheTrashMonitor : public testing::Test {
protected:
    void startWith(std::int64_t items) {
        trash.items = items;
        monitor.emplace(queue, queue, trash);
        monitor->onAdd = [this] { fired += '+'; };
        monitor->onEmpty = [this] { fired += '0'; };
        monitor->start();
    }
    void poll(int times = 1) { queue.advance(Seconds{0.5} * times); }

    VirtualMainQueue queue;
    FakeTrashSource trash;
    std::optional<TrashMonitor> monitor;
    std::string fired;
};

TEST_F(TheTrashMonitor, DecidesAChangeByTheCount) {
    struct Case {
        std::int64_t before;
        std::int64_t change;
        const char* fires;
    };
    for (const Case& c : {Case{0, 1, "+"}, Case{5, 10, "+"}, Case{3, -3, "0"}, Case{1, -1, "0"},
                          Case{3, -1, ""}, Case{3, 0, ""}, Case{0, 0, ""}}) {
        fired.clear();
        startWith(c.before);
        poll();
        trash.change(c.change);
        poll(4);
        EXPECT_EQ(fired, c.fires) << c.before << " items, changed by " << c.change;
    }
}

TEST_F(TheTrashMonitor, TakesADiskThatComesOrGoesForNoChange) {
    startWith(0);
    for (const std::int64_t by : {5, -2, 1, -4}) {
        const bool isDisk = by == 5 || by == -2;
        trash.change(by);
        trash.hasOtherVolumes = isDisk;
        poll(6);
    }
    EXPECT_EQ(fired, "+0");
}

TEST_F(TheTrashMonitor, CountsOnlyWhenTheFolderHasChanged) {
    startWith(4);
    poll(100);
    EXPECT_EQ(trash.countsBegun, 1);
    trash.change(1);
    poll(100);
    EXPECT_EQ(trash.countsBegun, 2);
}

TEST_F(TheTrashMonitor, SpacesAddsByMoreThanASecondAndFollowsTheCountMeanwhile) {
    startWith(0);
    trash.change(1);
    poll();
    trash.change(1);
    poll();
    trash.change(1);
    poll();
    EXPECT_EQ(fired, "+");  // The third add comes exactly 1 s after the first.
    trash.change(1);
    poll();
    EXPECT_EQ(fired, "++");
    trash.change(-4);
    poll();
    EXPECT_EQ(fired, "++0");  // Emptying has no minimum spacing.
}

TEST_F(TheTrashMonitor, IsNotSilencedByAClockThatIsSetBack) {
    startWith(0);
    trash.change(1);
    poll();
    queue.setClockBack(Seconds{3600});
    trash.change(1);
    poll(4);
    EXPECT_EQ(fired, "++");
    trash.countsAtOnce = false;
    trash.change(1);
    poll();
    queue.setClockBack(Seconds{3600});
    trash.answer(std::nullopt);
    poll(10);
    EXPECT_EQ(fired, "+++") << "the deadline for a count does not wait an hour either";
}

TEST_F(TheTrashMonitor, TreatsAChangeAsAnAddWhenNoCountComesInThreeSeconds) {
    startWith(5);
    trash.countsAtOnce = false;
    trash.change(-5);
    poll();
    // Counts fail at once, until exactly 3 s after the change was seen.
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(trash.waiting(), 1U);
        trash.answer(std::nullopt);
        poll();
    }
    EXPECT_EQ(fired, "");
    trash.answer(std::nullopt);
    poll();
    EXPECT_EQ(fired, "+");
    EXPECT_EQ(trash.waiting(), 0U);
    poll(20);
    EXPECT_EQ(fired, "+");
}

TEST_F(TheTrashMonitor, DoesNotMoveTheDeadlineForChangesWhilePending) {
    startWith(0);
    trash.countsAtOnce = false;
    for (int i = 0; i < 8; ++i) {
        trash.change(1);
        poll();
        if (trash.waiting() > 0) {
            trash.answer(std::nullopt);
        }
    }
    EXPECT_EQ(fired, "+");
}

TEST_F(TheTrashMonitor, PrefersALateCountToTheDeadline) {
    for (const std::optional<std::int64_t> late : {std::optional<std::int64_t>(0), {}}) {
        trash.countsAtOnce = true;
        startWith(2);
        trash.countsAtOnce = false;
        trash.change(-2);
        poll(20);
        EXPECT_EQ(trash.waiting(), 1U);
        EXPECT_EQ(fired, "");
        trash.answer(late);
        poll();
        EXPECT_EQ(std::exchange(fired, ""), late ? "0" : "+");
    }
}

TEST_F(TheTrashMonitor, BeginsAtZeroWhenTheFirstCountFails) {
    trash.countsAtOnce = false;
    startWith(7);
    trash.answer(std::nullopt);
    trash.countsAtOnce = true;
    trash.change(-7);
    poll();
    EXPECT_EQ(fired, "");
    trash.change(1);
    poll();
    EXPECT_EQ(fired, "+");
}

TEST_F(TheTrashMonitor, TreatsATrashThatComesAndGoesLikeAnyChange) {
    trash.modified = 0;
    startWith(0);
    poll(4);
    trash.items = 1;
    trash.setModified(500);
    poll();
    EXPECT_EQ(fired, "+");
    trash.items = 0;
    trash.setModified(0);
    poll();
    EXPECT_EQ(fired, "+0");
}

TEST_F(TheTrashMonitor, StopsPollingButUsesThePendingCount) {
    startWith(3);
    trash.countsAtOnce = false;
    trash.change(-3);
    poll();
    monitor->stop();
    trash.answer(0);
    EXPECT_EQ(fired, "0");
    trash.change(1);
    poll(20);
    EXPECT_EQ(trash.waiting(), 0U);
    monitor->stop();
}

}  // namespace
}  // namespace chimewerk
