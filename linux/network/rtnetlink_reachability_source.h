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

/// The kernel's routes and links, of IPv4 and IPv6, asked anew at each call over one socket. The network can
/// be reached when there is a default route through a link that is up and has carrier; see `leadsOut()`.
///
/// Routes of every table but that of the machine's own addresses count, since a VPN keeps its default route
/// in a table of its own. Where the kernel cannot be asked (no socket to be had, nothing sensible answered)
/// the network cannot be reached; the next call tries again with a new socket. An answer that changes in the
/// middle is asked for again, and taken as it is when it keeps changing. A machine with more routes than a
/// call should look at is judged by the first.
class RtnetlinkReachabilitySource final : public ReachabilitySource {
public:
    void open() override;
    void close() override;
    bool isReachable() override;

private:
    using State = NetlinkReply::State;

    bool hasSocket();
    State dumpRoutes(std::vector<RouteHop>& hops);
    LinkState askLink(std::uint32_t index);
    State ask(std::span<const std::byte> question, std::uint32_t sequence,
              const NetlinkReply::Visitor& visit);
    State receive(NetlinkReply& answer);

    bool isOpen_ = false;
    FileDescriptor socket_;
    std::uint32_t sequence_ = 0;
    std::vector<std::byte> buffer_;
    std::vector<RouteHop> hops_;
};

}  // namespace chimewerk
