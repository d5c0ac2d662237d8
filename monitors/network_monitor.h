// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// What the network monitor sees of the machine's network. Main thread only.
class ReachabilitySource {
public:
    virtual ~ReachabilitySource() = default;

    /// Opens what `isReachable()` needs. After a failure, `isReachable()` returns false.
    virtual void open() = 0;

    /// Closes it.
    virtual void close() = 0;

    /// Whether there is a usable way to the wider network at this moment; a way that would have to
    /// be established first is none. False when that cannot be found out, and when the source is
    /// not open. Sends nothing over the network and returns without waiting.
    virtual bool isReachable() = 0;
};

/// Reports the machine gaining and losing the network. The state at the start is no event. Main
/// thread only.
class NetworkMonitor {
public:
    NetworkMonitor(MainQueue& queue, ReachabilitySource& reachability);

    /// The network can be reached again.
    std::function<void()> onConnect;
    /// The network can be reached no longer.
    std::function<void()> onDisconnect;

    /// Takes the present state as known and polls every 2.5 s. Call it once before `stop()`.
    void start();

    /// Ends the polling.
    void stop();

private:
    void poll();

    ReachabilitySource& reachability_;
    bool wasReachable_ = false;
    Poller poller_;
};

}  // namespace chimewerk
