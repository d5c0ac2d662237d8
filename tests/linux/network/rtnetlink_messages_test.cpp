// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/network/rtnetlink_messages.h"

#include <sys/socket.h>

#include <linux/if.h>
#include <linux/rtnetlink.h>

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "linux/network/netlink_reply.h"

namespace chimewerk {
namespace {

using Bytes = std::vector<std::byte>;
using State = NetlinkReply::State;

template <typename Value>
Bytes bytesOf(const Value& value) {
    Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Bytes attribute(unsigned short type, const Bytes& value) {
    Bytes whole =
        bytesOf(rtattr{static_cast<unsigned short>(sizeof(rtattr) + value.size()), type}) + value;
    whole.resize(RTA_ALIGN(whole.size()));
    return whole;
}

Bytes message(unsigned short type, unsigned flags, std::uint32_t sequence, const Bytes& body) {
    Bytes whole =
        bytesOf(nlmsghdr{.nlmsg_len = static_cast<std::uint32_t>(sizeof(nlmsghdr) + body.size()),
                         .nlmsg_type = type,
                         .nlmsg_flags = static_cast<unsigned short>(flags),
                         .nlmsg_seq = sequence,
                         .nlmsg_pid = 0}) +
        body;
    whole.resize(NLMSG_ALIGN(whole.size()));
    return whole;
}

Bytes part(std::uint32_t sequence = 7, unsigned flags = 0) {
    return message(RTM_NEWROUTE, NLM_F_MULTI | flags, sequence, {});
}
Bytes done(int error = 0) {
    return message(NLMSG_DONE, NLM_F_MULTI, 7, bytesOf(error));
}
Bytes refusal(int error) {
    return message(NLMSG_ERROR, 0, 7, bytesOf(error));
}

TEST(ANetlinkReply, EndsInOneOfFourWays) {
    struct Case {
        const char* what;
        std::vector<Bytes> datagrams;
        State end;
        int parts;
        bool cut = false;
    };
    for (const Case& c : std::vector<Case>{
             {"in one datagram", {part() + part() + done()}, State::complete, 2},
             {"in several", {part(), part() + part(), done()}, State::complete, 3},
             {"a single message", {message(RTM_NEWLINK, 0, 7, {})}, State::complete, 1},
             {"more to come", {part()}, State::unfinished, 1},
             {"left-overs of an earlier answer",
              {part(6) + message(NLMSG_DONE, 0, 6, {}), part() + done()},
              State::complete,
              1},
             {"changed in the middle",
              {part(7, NLM_F_DUMP_INTR), part() + done()},
              State::interrupted,
              2},
             {"refused", {refusal(-19)}, State::refused, 0},
             {"confirmed", {refusal(0)}, State::complete, 0},
             {"broken off by the kernel", {part() + done(-90)}, State::refused, 1},
             {"overrun", {part() + message(NLMSG_OVERRUN, 0, 7, {}) + done()}, State::failed, 1},
             {"cut off behind a message", {part()}, State::failed, 1, true},
             {"an end without bytes", {message(NLMSG_DONE, 0, 7, {})}, State::complete, 0},
             {"a refusal without bytes", {message(NLMSG_ERROR, 0, 7, {})}, State::refused, 0},
             {"a length of nothing", {Bytes(sizeof(nlmsghdr))}, State::failed, 0},
             {"half a header", {part() + Bytes(5)}, State::failed, 1}}) {
        int parts = 0;
        NetlinkReply answer(7, [&](std::uint16_t, std::span<const std::byte>) { ++parts; });
        State state = State::unfinished;
        for (const Bytes& datagram : c.datagrams) {
            state = answer.take(datagram, c.cut);
        }
        EXPECT_EQ(state, c.end) << c.what;
        EXPECT_EQ(parts, c.parts) << c.what;
    }
}

rtmsg route(unsigned char type = RTN_UNICAST, unsigned flags = 0, unsigned char length = 0) {
    rtmsg made{};
    made.rtm_family = AF_INET;
    made.rtm_table = RT_TABLE_MAIN;
    made.rtm_type = type;
    made.rtm_flags = flags;
    made.rtm_dst_len = length;
    return made;
}
Bytes through(std::uint32_t link) {
    return attribute(RTA_OIF, bytesOf(link));
}
Bytes gateway() {
    return attribute(RTA_GATEWAY, Bytes(4));
}
Bytes table(std::uint32_t number) {
    return attribute(RTA_TABLE, bytesOf(number));
}
Bytes nextHop(int link, unsigned char flags, const Bytes& attributes = {}) {
    return bytesOf(rtnexthop{static_cast<unsigned short>(sizeof(rtnexthop) + attributes.size()),
                             flags, 0, link}) +
           attributes;
}

std::string hopsOf(std::span<const std::byte> bytes) {
    std::vector<RouteHop> hops;
    appendHops(bytes, hops);
    std::string text;
    for (const RouteHop& hop : hops) {
        text += std::to_string(hop.link) + (hop.isDefault ? "! " : " ");
    }
    return text;
}

TEST(ARoute, HasOnlyTheNextHopsThatLeadFurther) {
    struct Case {
        const char* what;
        Bytes bytes;
        const char* hops;
    };
    for (const Case& c : std::vector<Case>{
             {"default", bytesOf(route()) + through(3), "3! "},
             {"default in a table of its own", bytesOf(route()) + table(51820) + through(3), "3! "},
             {"default among the machine's own addresses",
              bytesOf(route()) + through(3) + table(RT_TABLE_LOCAL), ""},
             {"to a place behind a router",
              bytesOf(route(RTN_UNICAST, 0, 24)) + through(3) + gateway(), "3 "},
             {"to the link's own network", bytesOf(route(RTN_UNICAST, 0, 24)) + through(3), ""},
             {"unreachable", bytesOf(route(RTN_UNREACHABLE)) + through(1), ""},
             {"multicast", bytesOf(route(RTN_MULTICAST)) + through(1), ""},
             {"remembered for one destination",
              bytesOf(route(RTN_UNICAST, RTM_F_CLONED)) + through(3), ""},
             {"without carrier", bytesOf(route(RTN_UNICAST, RTNH_F_LINKDOWN)) + through(3), ""},
             {"dead", bytesOf(route(RTN_UNICAST, RTNH_F_DEAD)) + through(3), ""},
             {"through nothing", bytesOf(route()), ""},
             {"over several links",
              bytesOf(route()) +
                  attribute(RTA_MULTIPATH, nextHop(4, 0, gateway()) + nextHop(5, RTNH_F_LINKDOWN) +
                                               nextHop(6, RTNH_F_DEAD) + nextHop(7, 0)),
              "4! 7! "}}) {
        EXPECT_EQ(hopsOf(c.bytes), c.hops) << c.what;
    }
}

TEST(ARoute, MayBeTruncatedAnywhere) {
    const Bytes whole = bytesOf(route()) + attribute(RTA_MULTIPATH, nextHop(4, 0, gateway()) +
                                                                        nextHop(5, 0, gateway()));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(hopsOf(std::span(whole).first(size)), "") << size;
    }
    Bytes endless = whole;
    endless[sizeof(rtmsg) + sizeof(rtattr)] = std::byte{0};  // A next hop of length 0.
    EXPECT_EQ(hopsOf(endless), "");
}

TEST(ALink, IsUsableWhenUpWithCarrierAndATunnelOrADeadEndByItsKind) {
    constexpr unsigned kUp = IFF_UP | IFF_RUNNING | IFF_LOWER_UP;
    const auto link = [](unsigned flags, const std::string& kind) {
        ifinfomsg made{};
        made.ifi_flags = flags;
        Bytes name(kind.size() + 1);
        std::memcpy(name.data(), kind.data(), kind.size());
        return readLink(bytesOf(made) + attribute(IFLA_IFNAME, Bytes(5)) +
                        attribute(IFLA_LINKINFO | NLA_F_NESTED, attribute(IFLA_INFO_KIND, name)));
    };
    EXPECT_EQ(link(kUp, "veth"), (LinkState{.usable = true, .isTunnel = false}));
    for (const char* const tunnel : {"ovpn", "ovpn-dco", "tun", "wireguard"}) {
        EXPECT_EQ(link(kUp, tunnel), (LinkState{.usable = true, .isTunnel = true})) << tunnel;
    }
    for (const char* const deadEnd : {"dummy", "ifb", "nlmon"}) {
        EXPECT_EQ(link(kUp, deadEnd), (LinkState{.usable = false, .isTunnel = false})) << deadEnd;
    }
    for (const unsigned flags : {kUp & ~unsigned{IFF_UP}, kUp & ~unsigned{IFF_RUNNING},
                                 kUp & ~unsigned{IFF_LOWER_UP}, kUp | IFF_LOOPBACK}) {
        EXPECT_EQ(link(flags, ""), (LinkState{.usable = false, .isTunnel = false})) << flags;
    }
    EXPECT_EQ(readLink(Bytes(3)), std::nullopt);
}

TEST(TheWayOut, IsADefaultRouteThroughALinkOrATunnelOverALink) {
    constexpr RouteHop kOverLink{1, true};
    constexpr RouteHop kOverTunnel{2, true};
    constexpr RouteHop kOverDeadLink{3, true};
    constexpr RouteHop kRouterOnLink{1, false};
    constexpr RouteHop kRouterInTunnel{2, false};
    constexpr RouteHop kRouterOnDeadLink{3, false};
    const std::map<std::uint32_t, LinkState> links{
        {1, {true, false}}, {2, {true, true}}, {3, {false, false}}};
    struct Case {
        std::vector<RouteHop> hops;
        bool leads;
    };
    for (const Case& c : std::vector<Case>{{{}, false},
                                           {{kOverLink}, true},
                                           {{kOverDeadLink}, false},
                                           {{kOverDeadLink, kOverLink}, true},
                                           {{kRouterOnLink}, false},
                                           {{kOverTunnel}, false},
                                           {{kOverTunnel, kRouterInTunnel}, false},
                                           {{kOverTunnel, kRouterOnDeadLink}, false},
                                           {{kOverTunnel, kOverDeadLink}, false},
                                           {{kOverTunnel, kRouterOnLink}, true},
                                           {{kRouterOnLink, kOverTunnel}, true}}) {
        std::map<std::uint32_t, int> asked;
        EXPECT_EQ(leadsOut(c.hops,
                           [&](std::uint32_t link) {
                               EXPECT_EQ(++asked[link], 1);
                               return links.at(link);
                           }),
                  c.leads)
            << testing::PrintToString(c.hops.size()) << " hops, the first through "
            << (c.hops.empty() ? 0 : c.hops[0].link);
    }
}

}  // namespace
}  // namespace chimewerk
