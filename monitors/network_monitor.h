#pragma once

#include <functional>

#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// What the network monitor sees of the machine's network. Main thread only.
class ReachabilitySource {
public:
    virtual ~ReachabilitySource() = default;

    /// Takes hold of what `isReachable()` needs. A failure shows there and nowhere else.
    virtual void open() = 0;

    /// Lets go of it.
    virtual void close() = 0;

    /// Whether there is a usable way to the wider network at this moment; a way that would have to be
    /// established first is none. False when that cannot be found out, and when the source is not open. Sends
    /// nothing over the network and returns without waiting.
    virtual bool isReachable() = 0;
};

/// Tells the machine gaining the network from it losing it. The state at the start is no event. Main thread
/// only.
class NetworkMonitor {
public:
    NetworkMonitor(MainQueue& queue, ReachabilitySource& reachability);

    /// The network can be reached again.
    std::function<void()> onConnect;
    /// The network can be reached no longer.
    std::function<void()> onDisconnect;

    /// Takes the present state as known and looks every 2.5 s from now on. Call it once before `stop()`.
    void start();

    /// Ends the looking.
    void stop();

private:
    void poll();

    ReachabilitySource& reachability_;
    bool wasReachable_ = false;
    Poller poller_;
};

}  // namespace chimewerk
