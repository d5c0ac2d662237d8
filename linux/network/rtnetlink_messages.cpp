// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/network/rtnetlink_messages.h"

// The kernel headers below need this header first.
#include <sys/socket.h>

#include <linux/if.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

#include "linux/network/bytes.h"

namespace chimewerk {

namespace {

using Bytes = std::span<const std::byte>;

/// Calls `visit(type, value)` for each attribute and stops at a malformed one.
template <typename Visit>
void eachAttribute(Bytes bytes, Visit visit) {
    while (const auto header = readValue<rtattr>(bytes)) {
        if (header->rta_len < sizeof *header || header->rta_len > bytes.size()) {
            return;
        }
        visit(header->rta_type & NLA_TYPE_MASK,
              bytes.first(header->rta_len).subspan(sizeof *header));
        bytes = bytes.subspan(std::min<std::size_t>(bytes.size(), RTA_ALIGN(header->rta_len)));
    }
}

bool isDown(unsigned nextHopFlags) {
    return (nextHopFlags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0;
}

/// Reads the outgoing link and gateway of a route, or of one of the next hops in it.
void appendHop(Bytes attributes, std::uint32_t link, bool isDefault, std::vector<RouteHop>& hops) {
    bool hasGateway = false;
    eachAttribute(attributes, [&](int type, Bytes value) {
        if (type == RTA_OIF) {
            link = readValue<std::uint32_t>(value).value_or(0);
        } else if (type == RTA_GATEWAY || type == RTA_VIA) {
            hasGateway = true;
        }
    });
    if (link != 0 && (isDefault || hasGateway)) {
        hops.push_back({.link = link, .isDefault = isDefault});
    }
}

void appendMultipath(Bytes bytes, bool isDefault, std::vector<RouteHop>& hops) {
    while (const auto header = readValue<rtnexthop>(bytes)) {
        if (header->rtnh_len < sizeof *header || header->rtnh_len > bytes.size()) {
            return;
        }
        if (!isDown(header->rtnh_flags)) {
            appendHop(bytes.first(header->rtnh_len).subspan(sizeof *header),
                      static_cast<std::uint32_t>(header->rtnh_ifindex), isDefault, hops);
        }
        bytes = bytes.subspan(std::min<std::size_t>(bytes.size(), RTNH_ALIGN(header->rtnh_len)));
    }
}

bool isTunnelKind(std::string_view kind) {
    static constexpr auto kKinds = std::to_array<std::string_view>(
        {"gre", "gretap", "ip6gre", "ip6gretap", "ip6tnl", "ipip", "ovpn", "ovpn-dco", "sit", "tun",
         "vti", "vti6", "wireguard", "xfrm"});
    return std::ranges::find(kKinds, kind) != kKinds.end();
}

/// Links that report carrier but lead nowhere: what is sent there is dropped, or only recorded.
bool isDeadEndKind(std::string_view kind) {
    return kind == "dummy" || kind == "ifb" || kind == "nlmon";
}

std::string_view readText(Bytes value) {
    std::string_view text(reinterpret_cast<const char*>(value.data()), value.size());
    return text.substr(0, text.find('\0'));
}

}  // namespace

void appendHops(std::span<const std::byte> message, std::vector<RouteHop>& hops) {
    const auto route = readValue<rtmsg>(message);
    if (!route || route->rtm_type != RTN_UNICAST || (route->rtm_flags & RTM_F_CLONED) != 0 ||
        isDown(route->rtm_flags)) {
        return;
    }
    const Bytes attributes =
        message.subspan(std::min<std::size_t>(message.size(), NLMSG_ALIGN(sizeof *route)));
    const bool isDefault = route->rtm_dst_len == 0;
    std::uint32_t table = route->rtm_table;
    Bytes multipath;
    eachAttribute(attributes, [&](int type, Bytes value) {
        if (type == RTA_TABLE) {  // The header only holds small table numbers.
            table = readValue<std::uint32_t>(value).value_or(table);
        } else if (type == RTA_MULTIPATH) {
            multipath = value;
        }
    });
    if (table == RT_TABLE_LOCAL) {
        return;
    }
    if (!multipath.empty()) {
        appendMultipath(multipath, isDefault, hops);
    } else {
        appendHop(attributes, 0, isDefault, hops);
    }
}

std::optional<LinkState> readLink(std::span<const std::byte> message) {
    const auto link = readValue<ifinfomsg>(message);
    if (!link) {
        return std::nullopt;
    }
    // IFF_RUNNING is not set while a link with carrier waits for authentication.
    constexpr unsigned kNeeded = IFF_UP | IFF_RUNNING | IFF_LOWER_UP;
    LinkState state{.usable = (link->ifi_flags & (kNeeded | IFF_LOOPBACK)) == kNeeded,
                    .isTunnel = false};
    std::string_view kind;
    eachAttribute(message.subspan(std::min<std::size_t>(message.size(), NLMSG_ALIGN(sizeof *link))),
                  [&](int type, Bytes value) {
                      if (type != IFLA_LINKINFO) {
                          return;
                      }
                      eachAttribute(value, [&](int infoType, Bytes info) {
                          if (infoType == IFLA_INFO_KIND) {
                              kind = readText(info);
                          }
                      });
                  });
    state.usable = state.usable && !isDeadEndKind(kind);
    state.isTunnel = isTunnelKind(kind);
    return state;
}

bool leadsOut(std::span<const RouteHop> hops,
              const std::function<LinkState(std::uint32_t link)>& linkAt) {
    if (std::ranges::none_of(hops, &RouteHop::isDefault)) {
        return false;
    }
    std::map<std::uint32_t, LinkState> links;
    bool throughTunnel = false;
    bool tunnelCarried = false;
    for (const RouteHop& hop : hops) {
        const auto [known, isNew] = links.try_emplace(hop.link);
        if (isNew) {
            known->second = linkAt(hop.link);
        }
        const LinkState link = known->second;
        if (link.usable && link.isTunnel) {
            throughTunnel |= hop.isDefault;
        } else if (link.usable) {
            if (hop.isDefault) {
                return true;
            }
            tunnelCarried = true;
        }
    }
    return throughTunnel && tunnelCarried;
}

}  // namespace chimewerk
