// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/bus/bus_link.h"
#include "monitors/sleep_source.h"
#include "platform/source_report.h"

namespace chimewerk {

/// Sleep and wake, from logind on the system bus. Always holds a delay inhibitor, so that a sleep
/// waits for the answer to its message. The answer closes the inhibitor; a new one is taken after
/// the wake, after a cancelled sleep, and when logind or the bus has returned. An answer counts
/// only for the sleep of its message. Without an inhibitor, sleep and wake are still reported.
/// Without logind, nothing happens until it starts. Main thread only.
class LogindSleepSource final : public SleepSource, public ReportsItself {
public:
    /// The queue must outlive the source. `retryInterval` is the time between two attempts to reach
    /// the bus.
    explicit LogindSleepSource(EpollMainQueue& queue, Seconds retryInterval = kRetryInterval);

    /// Always succeeds: logind may start later.
    bool registerHandler(Handler handler) override;
    void allowPowerChange(std::intptr_t argument) override;
    SourceReport report() override;

private:
    void open(sd_bus* bus);
    void takeInhibitor(sd_bus* bus);
    void dropInhibitor();
    void reset();
    void reportSleep();
    void reportWake(sd_bus* bus);

    void onPrepareForSleep(sd_bus_message* signal);
    void onOwnerChanged(sd_bus_message* signal);
    void onInhibited(sd_bus_message* reply);

    Handler handler_;
    /// Numbers the sleeps; also the argument of their messages.
    std::intptr_t sleep_ = 0;
    /// Whether the system is going to sleep or asleep.
    bool isGoingToSleep_ = false;
    FileDescriptor inhibitor_;
    BusLink link_;
    BusSlot inhibitorRequest_;  // Destroyed before the bus on which it was sent
};

}  // namespace chimewerk
