// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/network_monitor.h"

#include <utility>

namespace chimewerk {

namespace {

constexpr Seconds kPollInterval{2.5};

}  // namespace

NetworkMonitor::NetworkMonitor(MainQueue& queue, ReachabilitySource& reachability)
    : reachability_(reachability), poller_(queue) {}

void NetworkMonitor::start() {
    reachability_.open();
    wasReachable_ = reachability_.isReachable();
    poller_.start(kPollInterval, reachability_, [this] { poll(); });
}

void NetworkMonitor::stop() {
    poller_.stop();
    reachability_.close();
}

void NetworkMonitor::poll() {
    const bool now = reachability_.isReachable();
    const bool before = std::exchange(wasReachable_, now);
    if (now && !before && onConnect) {
        onConnect();
    }
    if (!now && before && onDisconnect) {
        onDisconnect();
    }
}

}  // namespace chimewerk
