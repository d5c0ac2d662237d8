// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/network/netlink_reply.h"
#include "linux/network/rtnetlink_messages.h"
#include "monitors/network_monitor.h"
#include "platform/source_report.h"

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
///
/// Announces that links, addresses or routes have changed, once until the next reading, so that
/// the thousands of changes of a router cost no more than one.
class RtnetlinkReachabilitySource final : public ReachabilitySource, public ReportsItself {
public:
    /// The queue must outlive the source.
    explicit RtnetlinkReachabilitySource(EpollMainQueue& queue) : queue_(queue) {}

    void open() override;
    void close() override;
    bool isReachable() override;
    bool announcesChanges() const override { return watch_ != nullptr; }
    SourceReport report() override;

private:
    using State = NetlinkReply::State;

    void awaitChange();
    bool readReachability();
    bool hasSocket();
    State dumpRoutes(std::vector<RouteHop>& hops);
    LinkState requestLink(std::uint32_t index);
    State send(std::span<const std::byte> request, std::uint32_t sequence,
               const NetlinkReply::Visitor& visit);
    State receive(NetlinkReply& reply);

    EpollMainQueue& queue_;
    bool isOpen_ = false;
    FileDescriptor socket_;
    std::uint32_t sequence_ = 0;
    /// Not initialised, so that memory is used only for what has been received.
    std::unique_ptr<std::byte[]> buffer_;
    std::vector<RouteHop> hops_;
    /// Reports changes. Another one, because reports would disturb the answers to requests.
    FileDescriptor reports_;
    /// Null if a change was reported since the last reading.
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
