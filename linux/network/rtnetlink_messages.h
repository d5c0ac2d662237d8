// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace chimewerk {

/// A next hop that leads beyond the network of its link.
struct RouteHop {
    /// Index of the outgoing link.
    std::uint32_t link;
    /// Whether it belongs to a default route; otherwise it goes through a gateway to some
    /// other network.
    bool isDefault;
    bool operator==(const RouteHop&) const = default;
};

/// The properties of a link that matter for reachability.
struct LinkState {
    /// Up, has carrier, and can lead somewhere: loopback and dummy links cannot.
    bool usable;
    /// Its packets travel inside those of another link.
    bool isTunnel;
    bool operator==(const LinkState&) const = default;
};

/// Appends the next hops of the route in the body of an RTM_NEWROUTE message. Skips routes that
/// reject packets, routes in the table of local addresses, hops whose link is down, and
/// malformed bytes.
void appendHops(std::span<const std::byte> message, std::vector<RouteHop>& hops);

/// Returns the link in the body of an RTM_NEWLINK message, or none if the bytes are malformed.
std::optional<LinkState> readLink(std::span<const std::byte> message);

/// Returns whether these hops reach the wider network, that is, whether a default route uses a link
/// with carrier. A tunnel always reports carrier, so a default route through a tunnel counts only
/// while another usable link leads to a gateway. Calls `linkAt` at most once per link.
bool leadsOut(std::span<const RouteHop> hops,
              const std::function<LinkState(std::uint32_t link)>& linkAt);

}  // namespace chimewerk
