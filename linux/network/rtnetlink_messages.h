#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace chimewerk {

/// A next hop that leads further than the link's own network.
struct RouteHop {
    /// The index of the link it leaves through.
    std::uint32_t link;
    /// Whether the route leads to everywhere; otherwise it leads to a router, and to some place behind it.
    bool isDefault;
    bool operator==(const RouteHop&) const = default;
};

/// What counts of a link.
struct LinkState {
    /// It is up and has carrier, and leads out of the machine.
    bool usable;
    /// It has no wire of its own: its packets travel inside those of another link.
    bool isTunnel;
    bool operator==(const LinkState&) const = default;
};

/// Appends the next hops of the route in the body of an RTM_NEWROUTE message; none for a route that rejects
/// its packets or that lies in the table of the machine's own addresses, and none whose link is down. Ignores
/// bytes that make no sense.
void appendHops(std::span<const std::byte> message, std::vector<RouteHop>& hops);

/// The link in the body of an RTM_NEWLINK message; none when the bytes make no sense.
std::optional<LinkState> readLink(std::span<const std::byte> message);

/// Whether these hops lead to the wider network: a default route through a link with carrier. A tunnel always
/// claims to have one; a default route through it counts as long as another link leads to a router. `linkAt`
/// is asked at most once for each link.
bool leadsOut(std::span<const RouteHop> hops,
              const std::function<LinkState(std::uint32_t link)>& linkAt);

}  // namespace chimewerk
