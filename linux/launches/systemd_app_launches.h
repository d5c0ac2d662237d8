// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/launches/app_unit_launches.h"
#include "linux/links/bus_link.h"

namespace chimewerk {

/// Reports started application units, from the user's systemd manager on the session bus. The bus
/// and the manager may come late, go away and come back. Main thread only; must not be destroyed
/// from within its callback.
class SystemdAppLaunches {
public:
    /// `onLaunch` runs on the main thread, once per started unit. The queue must outlive the
    /// object. `retryInterval` is the time between two attempts to reach the bus.
    SystemdAppLaunches(EpollMainQueue& queue, std::function<void()> onLaunch,
                       Seconds retryInterval = kRetryInterval);

    /// Returns whether the manager is running and reports its units.
    bool isSubscribed() const { return isSubscribed_; }

private:
    struct Query;

    void open(sd_bus* bus);
    void subscribe(sd_bus* bus);
    void requestActivationTime(sd_bus* bus, const char* unitName);

    void onSubscribed(sd_bus_message* reply);
    void onOwnerChanged(sd_bus_message* signal);
    void onJobRemoved(sd_bus_message* signal);
    void onUnitRemoved(sd_bus_message* signal);

    const std::function<void()> onLaunch_;
    AppUnitLaunches launches_;
    bool isSubscribed_ = false;
    BusLink link_;
};

}  // namespace chimewerk
