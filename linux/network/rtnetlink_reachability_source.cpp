// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/network/rtnetlink_reachability_source.h"

#include <sys/socket.h>

#include <linux/rtnetlink.h>

#include <cerrno>
#include <optional>

namespace chimewerk {

namespace {

/// The kernel fills datagrams to at most half of this.
constexpr std::size_t kBufferSize = std::size_t{64} * 1024;
/// About ten thousand routes, which take about ten milliseconds.
constexpr int kMaxDatagrams = 64;
constexpr int kMaxDumps = 3;

struct RouteRequest {
    nlmsghdr header;
    rtmsg route;
};

struct LinkRequest {
    nlmsghdr header;
    ifinfomsg link;
    rtattr maskHeader;
    std::uint32_t mask;
};

FileDescriptor openRouteSocket() {
    FileDescriptor opened(
        socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
    if (opened) {
        // Lets the kernel filter the dump. Older kernels send everything, and `appendHops()`
        // filters it.
        const int on = 1;
        setsockopt(opened.get(), SOL_NETLINK, NETLINK_GET_STRICT_CHK, &on, sizeof on);
    }
    return opened;
}

/// Opens a socket that reports changes. The kernel removes some routes together with their address,
/// link or next hop, and then reports only that.
FileDescriptor openReports() {
    FileDescriptor opened(
        socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
    const sockaddr_nl address{.nl_family = AF_NETLINK, .nl_pad = 0, .nl_pid = 0, .nl_groups = 0};
    if (!opened ||
        bind(opened.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        return {};
    }
    for (const int group : {RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR,
                            RTNLGRP_IPV4_ROUTE, RTNLGRP_IPV6_ROUTE}) {
        if (setsockopt(opened.get(), SOL_NETLINK, NETLINK_ADD_MEMBERSHIP, &group, sizeof group) !=
            0) {
            return {};
        }
    }
    // Older kernels have no next hops of their own.
    const int nextHops = RTNLGRP_NEXTHOP;
    setsockopt(opened.get(), SOL_NETLINK, NETLINK_ADD_MEMBERSHIP, &nextHops, sizeof nextHops);
    return opened;
}

}  // namespace

void RtnetlinkReachabilitySource::open() {
    isOpen_ = true;
    buffer_ = std::make_unique_for_overwrite<std::byte[]>(kBufferSize);
    hasSocket();
    reports_ = openReports();
}

void RtnetlinkReachabilitySource::close() {
    isOpen_ = false;
    watch_ = nullptr;
    reports_ = FileDescriptor();
    socket_ = FileDescriptor();
    buffer_ = nullptr;
    hops_ = {};
}

bool RtnetlinkReachabilitySource::hasSocket() {
    if (isOpen_ && !socket_) {
        socket_ = openRouteSocket();
    }
    return static_cast<bool>(socket_);
}

/// Discards the reports of the changes that the next reading includes, and waits for another one.
void RtnetlinkReachabilitySource::awaitChange() {
    if (watch_ || !reports_) {
        return;
    }
    while (recv(reports_.get(), buffer_.get(), kBufferSize, 0) >= 0 || errno == ENOBUFS) {
    }
    watch_ = queue_.watch(reports_.get(), [this] {
        watch_ = nullptr;
        announce();
    });
}

bool RtnetlinkReachabilitySource::isReachable() {
    awaitChange();
    return readReachability();
}

bool RtnetlinkReachabilitySource::readReachability() {
    for (int attempt = 1; attempt <= kMaxDumps; ++attempt) {
        if (!hasSocket()) {
            return false;
        }
        const State state = dumpRoutes(hops_);
        const bool isLast = attempt == kMaxDumps;
        if (state == State::complete || state == State::unfinished ||
            (state == State::interrupted && isLast)) {
            return leadsOut(hops_, [this](std::uint32_t link) { return requestLink(link); });
        }
    }
    return false;
}

SourceReport RtnetlinkReachabilitySource::report() {
    if (!hasSocket()) {
        return {.mechanism = "no rtnetlink",
                .missing = "The kernel does not tell its routes.",
                .advice = "Start Chimewerk outside of a sandbox."};
    }
    return {.mechanism = readReachability() ? "rtnetlink, connected" : "rtnetlink, not connected"};
}

NetlinkReply::State RtnetlinkReachabilitySource::dumpRoutes(std::vector<RouteHop>& hops) {
    RouteRequest request{};
    request.header = {.nlmsg_len = sizeof request,
                      .nlmsg_type = RTM_GETROUTE,
                      .nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP,
                      .nlmsg_seq = ++sequence_,
                      .nlmsg_pid = 0};
    request.route.rtm_type = RTN_UNICAST;
    hops.clear();
    return send(std::as_bytes(std::span(&request, 1)), sequence_,
                [&hops](std::uint16_t type, std::span<const std::byte> body) {
                    if (type == RTM_NEWROUTE) {
                        appendHops(body, hops);
                    }
                });
}

LinkState RtnetlinkReachabilitySource::requestLink(std::uint32_t index) {
    LinkRequest request{};
    request.header = {.nlmsg_len = sizeof request,
                      .nlmsg_type = RTM_GETLINK,
                      .nlmsg_flags = NLM_F_REQUEST,
                      .nlmsg_seq = ++sequence_,
                      .nlmsg_pid = 0};
    request.link.ifi_index = static_cast<int>(index);
    request.maskHeader = {.rta_len = RTA_LENGTH(sizeof request.mask), .rta_type = IFLA_EXT_MASK};
    request.mask = RTEXT_FILTER_SKIP_STATS;
    std::optional<LinkState> link;
    if (hasSocket()) {
        send(std::as_bytes(std::span(&request, 1)), sequence_,
             [&link](std::uint16_t type, std::span<const std::byte> body) {
                 if (type == RTM_NEWLINK) {
                     link = readLink(body);
                 }
             });
    }
    // The kernel refuses the request if the link has vanished since its route was read.
    return link.value_or(LinkState{.usable = false, .isTunnel = false});
}

NetlinkReply::State RtnetlinkReachabilitySource::send(std::span<const std::byte> request,
                                                      std::uint32_t sequence,
                                                      const NetlinkReply::Visitor& visit) {
    NetlinkReply reply(sequence, visit);
    State state = State::failed;
    if (::send(socket_.get(), request.data(), request.size(), 0) ==
        static_cast<ssize_t>(request.size())) {
        state = receive(reply);
    }
    if (state == State::failed || state == State::unfinished) {
        // Discards the rest of the answer, which must not reach a later request.
        socket_ = FileDescriptor();
    }
    return state;
}

/// Takes datagrams from the kernel only; privileged processes can send to this socket too. Never
/// blocks: the kernel produces a dump as it is read, and any other answer before `send()` returns.
NetlinkReply::State RtnetlinkReachabilitySource::receive(NetlinkReply& reply) {
    for (int i = 0; i < kMaxDatagrams; ++i) {
        iovec part{.iov_base = buffer_.get(), .iov_len = kBufferSize};
        sockaddr_nl sender{};
        msghdr message{};
        message.msg_name = &sender;
        message.msg_namelen = sizeof sender;
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        ssize_t size = -1;
        do {
            size = recvmsg(socket_.get(), &message, 0);
        } while (size < 0 && errno == EINTR);
        if (size <= 0) {
            return State::failed;
        }
        if (message.msg_namelen != sizeof sender || sender.nl_pid != 0) {
            continue;
        }
        const State state =
            reply.take(std::span<const std::byte>(buffer_.get(), static_cast<std::size_t>(size)),
                       (message.msg_flags & MSG_TRUNC) != 0);
        if (state != State::unfinished) {
            return state;
        }
    }
    return State::unfinished;
}

}  // namespace chimewerk
