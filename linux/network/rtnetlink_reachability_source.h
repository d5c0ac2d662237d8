// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "linux/network/netlink_reply.h"
#include "linux/network/rtnetlink_messages.h"
#include "monitors/network_monitor.h"

namespace chimewerk {

/// Queries the kernel's IPv4 and IPv6 routes and links at each call, over one socket. The
/// network is reachable if there is a default route through a link that is up and has carrier;
/// see `leadsOut()`.
///
/// Counts routes of every table except that of local addresses, because a VPN keeps its default
/// route in a table of its own. If the kernel cannot be queried, the network counts as unreachable
/// and the next call tries again with a new socket. A dump that changes while it is read is
/// requested again, and used as it is if it keeps changing. On machines with very many routes only
/// the first ones count.
class RtnetlinkReachabilitySource final : public ReachabilitySource {
public:
    void open() override;
    void close() override;
    bool isReachable() override;

private:
    using State = NetlinkReply::State;

    bool hasSocket();
    State dumpRoutes(std::vector<RouteHop>& hops);
    LinkState requestLink(std::uint32_t index);
    State send(std::span<const std::byte> request, std::uint32_t sequence,
               const NetlinkReply::Visitor& visit);
    State receive(NetlinkReply& reply);

    bool isOpen_ = false;
    FileDescriptor socket_;
    std::uint32_t sequence_ = 0;
    std::vector<std::byte> buffer_;
    std::vector<RouteHop> hops_;
};

}  // namespace chimewerk
