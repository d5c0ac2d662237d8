// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/write_schedule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <optional>
#include <vector>

#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;

class TheWriteSchedule : public testing::Test {
protected:
    /// Ends the current write.
    void end(bool written) { std::exchange(done, std::nullopt).value()(written); }
    bool writing() const { return done.has_value(); }
    void advance(double seconds) { queue.advance(Seconds{seconds}); }

    VirtualMainQueue queue;
    int begun = 0;
    std::optional<WriteSchedule::Done> done;
    std::optional<WriteSchedule> schedule{std::in_place, queue,
                                          [this](WriteSchedule::Done whenDone) {
                                              ++begun;
                                              EXPECT_FALSE(writing());
                                              done = std::move(whenDone);
                                          }};
};

TEST_F(TheWriteSchedule, WritesABurstOnceATenthOfASecondAfterItsFirstChange) {
    for (int i = 0; i < 6; ++i) {
        EXPECT_FALSE(writing());
        schedule->changed();
        advance(0.0167);
    }
    EXPECT_TRUE(writing());
    EXPECT_TRUE(schedule->hasUnwritten());
    end(true);
    EXPECT_FALSE(schedule->hasUnwritten());
    EXPECT_EQ(queue.queued(), 0U);
}

TEST_F(TheWriteSchedule, LeavesNoChangeUnwrittenLongerThanADelayAndTwoWrites) {
    constexpr double kFrame = 1.0 / 60;
    for (const double write : {0.001, 0.05, 0.3}) {
        std::deque<WallTime> unwritten;
        std::size_t covered = 0;  // By the write in progress
        WallTime ends = kDistantPast;
        double oldest = 0;
        for (int frame = 0; frame < 600; ++frame) {
            unwritten.push_back(queue.now());
            schedule->changed();
            for (int i = 0; i < 16; ++i) {
                const bool before = writing();
                advance(kFrame / 16);
                if (writing() && !before) {
                    covered = unwritten.size();
                    ends = queue.now() + Seconds{write};
                } else if (writing() && queue.now() >= ends) {
                    oldest = std::max(oldest, (queue.now() - unwritten.front()).count());
                    unwritten.erase(unwritten.begin(), unwritten.begin() + std::ptrdiff_t(covered));
                    end(true);
                    covered = unwritten.size();  // If the next write has started at once
                    ends = queue.now() + Seconds{write};
                }
            }
        }
        EXPECT_LE(oldest, 0.1 + 2 * write + 2 * kFrame) << "writes of " << write << " s";
        EXPECT_GT(oldest, 0.1);
        if (writing()) {
            end(true);
        }
        schedule->wroteAll();
        advance(1);
    }
}

TEST_F(TheWriteSchedule, DelaysADragUntilItsEndButNotForever) {
    const auto drag = [this](int moves) {
        for (int i = 0; i < moves; ++i) {
            schedule->changed();
            advance(1.0 / 60);
            if (writing()) {
                end(true);
            }
        }
    };
    auto held = schedule->hold();
    drag(120);
    EXPECT_EQ(begun, 0);
    held.reset();
    advance(0.1);
    EXPECT_EQ(begun, 1);
    end(true);

    held = schedule->hold();
    drag(16 * 60);
    EXPECT_EQ(begun, 1 + 3);
    schedule.reset();
}

TEST_F(TheWriteSchedule, WritesAgainAtOnceIfSomethingChangedDuringALongWrite) {
    schedule->changed();
    advance(0.1);
    schedule->changed();
    advance(5);
    EXPECT_EQ(begun, 1);
    end(true);
    EXPECT_EQ(begun, 2);
    EXPECT_TRUE(schedule->hasUnwritten());
    end(true);
    EXPECT_FALSE(schedule->hasUnwritten());
    EXPECT_EQ(queue.queued(), 0U);
}

TEST_F(TheWriteSchedule, RetriesLessAndLessOftenUntilItSucceeds) {
    schedule->changed();
    advance(0.1);
    std::vector<double> waits;
    for (int i = 0; i < 9; ++i) {
        end(false);
        EXPECT_TRUE(schedule->hasUnwritten());
        const WallTime failed = queue.now();
        while (!writing()) {
            advance(0.5);
        }
        waits.push_back(std::round((queue.now() - failed).count()));
    }
    EXPECT_THAT(waits, ElementsAre(1, 2, 4, 8, 16, 32, 60, 60, 60));
    end(true);
    EXPECT_EQ(queue.queued(), 0U);

    schedule->changed();
    advance(0.1);
    end(false);
    advance(1);
    EXPECT_TRUE(writing());
}

TEST_F(TheWriteSchedule, RetriesAtTheNextChangeDuringALongWait) {
    schedule->changed();
    advance(0.1);
    for (int i = 0; i < 7; ++i) {
        end(false);
        advance(64);
    }
    end(false);
    schedule->changed();
    advance(0.1);
    EXPECT_TRUE(writing());
    end(true);
    begun = 0;
    advance(3600);
    EXPECT_EQ(begun, 0);
}

TEST_F(TheWriteSchedule, DoesNotWriteAgainWhatFlushHasWritten) {
    schedule->changed();
    schedule->wroteAll();
    advance(1);
    EXPECT_EQ(begun, 0);

    schedule->changed();
    advance(0.1);
    schedule->changed();
    schedule->wroteAll();
    end(true);
    EXPECT_FALSE(schedule->hasUnwritten());
}

TEST_F(TheWriteSchedule, MayBeDestroyedBeforeItsWriteAndWakeUpsEnd) {
    schedule->changed();
    advance(0.1);
    schedule->changed();
    schedule.reset();
    end(true);
    advance(10);
    EXPECT_EQ(begun, 1);
}

}  // namespace
}  // namespace chimewerk
