// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "platform/main_queue.h"
#include "platform/polled_source.h"
#include "platform/poller.h"

namespace chimewerk {

/// Reports whether the network can be reached. Main thread only.
class ReachabilitySource : public PolledSource {
public:
    /// Opens what `isReachable()` needs. If this fails, `isReachable()` returns false.
    virtual void open() = 0;

    /// Closes the source. `isReachable()` then returns false.
    virtual void close() = 0;

    /// Returns whether there is now a usable route to the wider network; a connection that would
    /// have to be established first does not count. False if that cannot be determined or the
    /// source is not open. Sends nothing over the network and does not block.
    virtual bool isReachable() = 0;
};

/// Reports that the network was gained or lost. The state at the start is not reported. Main
/// thread only.
class NetworkMonitor {
public:
    NetworkMonitor(MainQueue& queue, ReachabilitySource& reachability);

    /// Called when the network can be reached again.
    std::function<void()> onConnect;
    /// Called when the network can no longer be reached.
    std::function<void()> onDisconnect;

    /// Takes the current state as known and polls every 2.5 s, while the source may have changed.
    /// Call once before `stop()`.
    void start();

    /// Stops polling and closes the source.
    void stop();

private:
    void poll();

    ReachabilitySource& reachability_;
    bool wasReachable_ = false;
    Poller poller_;
};

}  // namespace chimewerk
