// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/bus/bus_link.h"
#include "linux/launches/launch_facts.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// Reports started application units, from the user's systemd manager on the session bus. The bus
/// and the manager may come late, go away and come back. Main thread only; must not be destroyed
/// from within its callback.
class SystemdAppLaunches {
public:
    using OnUnit = std::function<void(LaunchSign)>;

    /// `onUnit` runs on the main thread a moment after a job of an application's unit has ended,
    /// with the processes that the unit holds then; not at all if it holds none. The queue must
    /// outlive the object. `retryInterval` is the time between two attempts to reach the bus.
    SystemdAppLaunches(EpollMainQueue& queue, OnUnit onUnit,
                       Seconds retryInterval = kRetryInterval);

private:
    struct Query;

    void open(sd_bus* bus);
    void requestProcesses(const std::string& unitName);

    void onOwnerChanged(sd_bus_message* signal);
    void onJobRemoved(sd_bus_message* signal);

    EpollMainQueue& queue_;
    const OnUnit onUnit_;
    /// Null while the bus is away.
    sd_bus* bus_ = nullptr;
    BusLink link_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
