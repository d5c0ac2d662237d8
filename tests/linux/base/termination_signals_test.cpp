// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/termination_signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "linux/base/epoll_main_queue.h"

namespace chimewerk {
namespace {

/// Runs in a process of its own.
void blockTheMainThreadAndTerminate() {
    EpollMainQueue queue;
    const TerminationSignals signals(queue, Seconds{0.05}, [] {});
    kill(getpid(), SIGTERM);
    while (true) {
        pause();
    }
}

TEST(ATerminationSignal, EndsAProcessWhoseMainThreadIsBlocked) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(blockTheMainThreadAndTerminate(), testing::KilledBySignal(SIGALRM), "");
}

}  // namespace
}  // namespace chimewerk
