// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/network_monitor.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_sources.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

constexpr Seconds kPoll{2.5};

/// Appends the calls to `fired`: '+' for a connection, '-' for its loss.
class TheNetworkMonitor : public testing::Test {
protected:
    TheNetworkMonitor() {
        monitor.onConnect = [this] { fired += '+'; };
        monitor.onDisconnect = [this] { fired += '-'; };
    }

    VirtualMainQueue queue;
    FakeReachabilitySource network;
    NetworkMonitor monitor{queue, network};
    std::string fired;
};

TEST_F(TheNetworkMonitor, ReportsChangesAtTheNextPollAndNotTheStateAtStart) {
    for (const bool atStart : {true, false}) {
        fired.clear();
        network.plugged = atStart;
        monitor.start();
        queue.advance(kPoll * 10);
        EXPECT_EQ(fired, "") << atStart;
        network.plugged = !atStart;
        queue.advance(Seconds{2.4});
        EXPECT_EQ(fired, "") << atStart;
        queue.advance(Seconds{0.1});
        EXPECT_EQ(fired, atStart ? "-" : "+");
        network.plugged = atStart;
        queue.advance(kPoll * 10);
        EXPECT_EQ(fired, atStart ? "-+" : "+-");
        monitor.stop();
    }
}

TEST_F(TheNetworkMonitor, MissesALossBetweenTwoPolls) {
    network.plugged = true;
    monitor.start();
    network.plugged = false;
    queue.advance(Seconds{2.0});
    network.plugged = true;
    queue.advance(kPoll);
    EXPECT_EQ(fired, "");
}

TEST_F(TheNetworkMonitor, ReadsTheStateAgainAtEachStartAndClosesTheSourceAtStop) {
    network.plugged = true;
    monitor.start();
    EXPECT_TRUE(network.isOpen);
    monitor.stop();
    EXPECT_FALSE(network.isOpen);
    queue.advance(kPoll * 2);
    network.plugged = false;
    monitor.start();
    queue.advance(kPoll * 2);
    EXPECT_EQ(fired, "");
    network.plugged = true;
    queue.advance(kPoll);
    EXPECT_EQ(fired, "+");
}

}  // namespace
}  // namespace chimewerk
