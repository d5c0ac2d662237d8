// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Any bytes may stand for the kernel's answer about routes and links.
#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "linux/network/netlink_reply.h"
#include "linux/network/rtnetlink_messages.h"

using namespace chimewerk;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// The first byte tells where the first datagram ends.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    if (bytes.empty()) {
        return 0;
    }
    const auto datagrams = bytes.subspan(1);
    const std::size_t first = std::min<std::size_t>(data[0] * std::size_t{16}, datagrams.size());
    std::vector<RouteHop> hops;
    std::vector<LinkState> links;
    std::size_t taken = 0;
    NetlinkReply reply(1, [&](std::uint16_t type, std::span<const std::byte> body) {
        taken += sizeof(nlmsghdr) + body.size();
        if (type == RTM_NEWROUTE) {
            appendHops(body, hops);
        } else if (const auto link = readLink(body)) {
            links.push_back(*link);
        }
    });
    if (reply.take(datagrams.first(first), false) == NetlinkReply::State::unfinished) {
        reply.take(datagrams.subspan(first), (data[0] & 1U) != 0);
    }
    leadsOut(hops, [&](std::uint32_t link) {
        return links.empty() ? LinkState{} : links[link % links.size()];
    });
    // No message is read twice, and each hop has bytes of its own.
    if (taken > size || hops.size() > size / sizeof(rtnexthop) ||
        std::ranges::any_of(hops, [](const RouteHop& hop) { return hop.link == 0; })) {
        std::abort();
    }
    return 0;
}
