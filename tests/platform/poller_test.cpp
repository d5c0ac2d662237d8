// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/poller.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

constexpr Seconds kInterval{0.25};

/// A number that the test sets.
class FakeReading final : public PolledSource {
public:
    bool announces = true;
    int value = 0;

    bool announcesChanges() const override { return announces; }
    void set(int to) {
        value = to;
        announce();
    }
    void lose() {
        announces = false;
        announce();
    }
};

class ThePoller : public testing::Test {
protected:
    void start(Poller& started) {
        started.start(kInterval, source, [this] { ++runs; });
    }
    int runsIn(Seconds span) {
        queue.advance(span);
        return std::exchange(runs, 0);
    }

    VirtualMainQueue queue;
    FakeReading source;
    Poller poller{queue};
    int runs = 0;
};

TEST_F(ThePoller, TakesTheSameChangesAtTheSameTimesAsWithoutSleep) {
    using Changes = std::vector<std::pair<double, int>>;
    std::minstd_rand random(5);
    std::uniform_real_distribution<double> quiet(0.01, 1.5);
    std::uniform_int_distribution<int> number(0, 2);
    Poller restless(queue);
    Changes seen;
    Changes seenRestlessly;
    int restlessRuns = 0;
    const auto look = [this](Changes& changes) {
        if (changes.empty() || changes.back().second != source.value) {
            changes.emplace_back(queue.now().time_since_epoch().count(), source.value);
        }
    };
    poller.start(kInterval, source, [&] {
        ++runs;
        look(seen);
    });
    restless.start(kInterval, [&] {
        ++restlessRuns;
        look(seenRestlessly);
    });
    for (int i = 0; i < 1000; ++i) {
        queue.advance(Seconds{quiet(random)});
        source.set(number(random));
    }
    queue.advance(kInterval);
    EXPECT_EQ(seen, seenRestlessly);
    EXPECT_GT(seen.size(), 300U);
    EXPECT_LE(runs, 1001);
    EXPECT_GT(restlessRuns, 2500);
}

TEST_F(ThePoller, ReadsAtEachIntervalWhileTheSourceCannotTell) {
    source.announces = false;
    start(poller);
    EXPECT_EQ(runsIn(kInterval * 10), 10);
    source.announces = true;
    EXPECT_EQ(runsIn(kInterval * 10), 1);
    source.lose();
    EXPECT_EQ(runsIn(kInterval * 10), 10);
}

TEST_F(ThePoller, RunsOnceMoreWhenTheJobOrAnAnnouncementDuringItAsksForThat) {
    int more = 3;
    poller.start(kInterval, source, [&] {
        ++runs;
        if (--more > 0) {
            more == 1 ? source.set(1) : poller.wake();
        }
    });
    EXPECT_EQ(runsIn(kInterval * 10), 3);
}

TEST_F(ThePoller, IgnoresAnnouncementsOnceStoppedOrDestroyed) {
    start(poller);
    poller.stop();
    source.set(1);
    EXPECT_EQ(runsIn(kInterval * 4), 0);
    {
        Poller shortLived(queue);
        start(shortLived);
        EXPECT_EQ(runsIn(kInterval * 4), 1);
    }
    source.set(2);
    EXPECT_EQ(runsIn(kInterval * 4), 0);
    start(poller);
    EXPECT_EQ(runsIn(kInterval * 4), 1);
    source.set(3);
    EXPECT_EQ(runsIn(kInterval * 4), 1) << "after a second start";
}

}  // namespace
}  // namespace chimewerk
