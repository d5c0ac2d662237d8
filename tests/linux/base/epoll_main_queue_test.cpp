// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/epoll_main_queue.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <string>
#include <thread>

#include "support/run_queue.h"

namespace chimewerk {
namespace {

TEST(TheMainQueue, RunsPostedJobsInOrderFromAnyThread) {
    EpollMainQueue queue;
    std::string ran;
    queue.post([&] {
        ran += 'a';
        queue.post([&] { ran += 'd'; });  // After everything that is already there.
    });
    std::thread([&] {
        queue.post([&] { ran += 'b'; });
        queue.post([&] { ran += 'c'; });
    }).join();
    queue.post([&] { queue.post([&] { queue.quit(); }); });
    queue.run();
    EXPECT_EQ(ran, "abcd");
}

TEST(TheMainQueue, NeedsNoWakeUpForWhatAJobPosts) {
    EpollMainQueue queue;
    int left = 3;
    std::function<void()> again = [&] {
        if (--left > 0) {
            queue.post(again);
        }
    };
    queue.postAfter(Seconds{0.01}, again);
    EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.05}), 2)
        << "jobs that post without end hold up nothing";
    EXPECT_EQ(left, 0);
}

TEST(TheMainQueue, RunsDelayedJobsInOrderAndNeverEarly) {
    EpollMainQueue queue;
    std::string ran;
    const auto begin = std::chrono::steady_clock::now();
    queue.postAfter(Seconds{0.03}, [&] {
        ran += 'c';
        queue.quit();
    });
    queue.postAfter(Seconds{0.01}, [&] { ran += 'a'; });
    queue.postAfter(Seconds{0.01}, [&] { ran += 'b'; });
    queue.run();
    EXPECT_EQ(ran, "abc");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, Seconds{0.03});
}

TEST(TheMainQueue, SharesWakeUpsBetweenTimersOfMultipleIntervals) {
    EpollMainQueue queue;
    int fastRuns = 0;
    int slowRuns = 0;
    queue.every(Seconds{0.02}, [&] { ++fastRuns; });
    std::this_thread::sleep_for(std::chrono::milliseconds(7));
    queue.every(Seconds{0.04}, [&] { ++slowRuns; });
    int wakeUps = 0;
    while (slowRuns < 8) {
        wakeUps += runOnce(queue, std::chrono::seconds(1)) ? 1 : 0;
    }
    EXPECT_GT(fastRuns, slowRuns);
    // Each slow run shares one; a busy machine may part a few.
    EXPECT_LE(wakeUps, fastRuns + slowRuns / 2);
}

TEST(TheMainQueue, RunsATimerUntilInvalidatedEvenWithoutItsHandle) {
    EpollMainQueue queue;
    int runs = 0;
    std::shared_ptr<Timer> timer = queue.every(Seconds{0.002}, [&] {
        if (++runs == 3) {
            timer->invalidate();
            queue.postAfter(Seconds{0.01}, [&] { queue.quit(); });
        }
    });
    int unheld = 0;
    queue.every(Seconds{0.002}, [&] { ++unheld; });
    queue.run();
    EXPECT_EQ(runs, 3);
    EXPECT_GE(unheld, 3);
}

TEST(TheMainQueue, LetsATimerSleepAndRunAgainAtAMultipleOfItsInterval) {
    using std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kInterval{20};
    EpollMainQueue queue;
    int runs = 0;
    steady_clock::time_point last;
    const std::shared_ptr<Timer> timer = queue.every(kInterval, [&] {
        ++runs;
        last = steady_clock::now();
        timer->sleep();
    });
    EXPECT_TRUE(runUntil(queue, [&] { return runs == 1; }));
    EXPECT_EQ(wakeUpsWithin(queue, kInterval * 5), 0);
    int inTime = 0;
    for (int i = 2; i < 8; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(3 * i));
        const auto next = (steady_clock::now().time_since_epoch() / kInterval + 1) * kInterval;
        timer->wake();
        timer->wake();
        EXPECT_TRUE(runUntil(queue, [&] { return runs == i; }));
        EXPECT_GE(last.time_since_epoch(), next);
        inTime += last.time_since_epoch() < next + kInterval ? 1 : 0;
    }
    EXPECT_GT(inTime, 0);  // A busy machine may delay some.
    timer->wake();
    timer->invalidate();
    EXPECT_LE(wakeUpsWithin(queue, kInterval * 3), 1);
    EXPECT_EQ(runs, 7);
}

TEST(TheMainQueue, WatchesDescriptorsUntilTheWatchEnds) {
    EpollMainQueue queue;
    std::array<int, 2> pipes{};
    ASSERT_EQ(pipe(pipes.data()), 0);
    std::string got;
    std::unique_ptr<EpollMainQueue::Watch> watch = queue.watch(pipes[0], [&] {
        char c = 0;
        ASSERT_EQ(read(pipes[0], &c, 1), 1);
        got += c;
        if (c == 'y') {
            watch.reset();  // From within its own job.
        }
    });
    ASSERT_EQ(write(pipes[1], "xyz", 3), 3);
    for (int i = 0; i < 5; ++i) {
        queue.dispatch();
    }
    EXPECT_EQ(got, "xy");
    EXPECT_EQ(queue.watch(-1, [] {}), nullptr);
    close(pipes[0]);
    close(pipes[1]);
}

}  // namespace
}  // namespace chimewerk
