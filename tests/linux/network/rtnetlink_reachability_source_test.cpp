// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/network/rtnetlink_reachability_source.h"

#include <fcntl.h>
#include <linux/if_tun.h>
#include <linux/netlink.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>

#include "linux/base/file_descriptor.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"
#include "tools/machine/private_network.h"

namespace chimewerk {
namespace {

/// A network with two cables, near0 to far0 and near1 to far1, both plugged in; near0 and near1
/// have addresses.
class TheReachability : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateNetwork::enter()) {
            GTEST_SKIP() << "This user may not make network namespaces; root may.";
        }
        for (const std::string& n : {std::string("0"), std::string("1")}) {
            ip("link add near" + n + " type veth peer name far" + n);
            ip("link set far" + n + " up");
            ip("link set near" + n + " up");
            ip("addr add 192.0." + n + ".1/24 dev near" + n);
            ip("addr add 2001:db8:" + n + "::1/64 dev near" + n + " nodad");
        }
        source.open();
    }

    static void ip(const std::string& arguments) {
        ASSERT_TRUE(PrivateNetwork::ip(arguments)) << arguments;
    }

    /// Waits for this state: the kernel may report a carrier change up to a second late.
    testing::AssertionResult becomes(bool expected) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (source.isReachable() != expected) {
            if (std::chrono::steady_clock::now() > deadline) {
                return testing::AssertionFailure()
                       << "still " << (expected ? "un" : "") << "reachable after 10 s";
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return testing::AssertionSuccess();
    }
    void plugAndUnplug(const std::string& farEnd) {
        EXPECT_TRUE(becomes(true));
        ip("link set " + farEnd + " down");
        EXPECT_TRUE(becomes(false));
        ip("link set " + farEnd + " up");
        EXPECT_TRUE(becomes(true));
    }

    EpollMainQueue queue;
    RtnetlinkReachabilitySource source{queue};
};

TEST_F(TheReachability, FollowsTheCableOfADefaultRoute) {
    EXPECT_FALSE(source.isReachable()) << "there are links, but no default route";
    ip("route add default via 192.0.0.2 dev near0");
    plugAndUnplug("far0");
    ip("link set near0 down");
    EXPECT_FALSE(source.isReachable());
}

TEST_F(TheReachability, CountsAnIpv6OnlyNetwork) {
    ip("-6 route add default via 2001:db8:0::2 dev near0");
    plugAndUnplug("far0");
}

TEST_F(TheReachability, NoticesThatARouteHasGoneWithItsAddress) {
    // The kernel removes the route together with its address, but announces only the removal of
    // the address.
    ip("route add default dev near0 src 192.0.0.1");
    EXPECT_TRUE(becomes(true));
    ip("addr del 192.0.0.1/24 dev near0");
    EXPECT_FALSE(source.isReachable());
}

TEST_F(TheReachability, IgnoresRoutesThatRejectPacketsAndThoseOfLocalAddresses) {
    for (const char* const route :
         {"unreachable default", "blackhole default", "prohibit default", "throw default",
          "default dev near0 table local", "198.51.100.0/24 via 192.0.0.2 dev near0"}) {
        for (const char* const family : {"-4 ", "-6 "}) {
            if (std::strstr(route, "198") != nullptr && std::strcmp(family, "-6 ") == 0) {
                continue;
            }
            ip(std::string(family) + "route add " + route);
            EXPECT_FALSE(source.isReachable()) << family << route;
            ip(std::string(family) + "route del " + route);
        }
    }
}

TEST_F(TheReachability, CountsDefaultRoutesOfOtherTablesAndSourceSpecificOnes) {
    for (const char* const route :
         {"-4 route add default dev near0 table 100", "-6 route add default dev near0 table 51820",
          "-6 route add default from 2001:db8::/32 via 2001:db8:0::2 dev near0"}) {
        ip(route);
        EXPECT_TRUE(becomes(true)) << route;
        ip(std::string(route).replace(9, 3, "del"));
        EXPECT_FALSE(source.isReachable()) << route;
    }
}

TEST_F(TheReachability, NeedsOneOfSeveralNextHopsToBePluggedIn) {
    ip("route add default nexthop dev near0 nexthop dev near1");
    ip("link set far0 down");
    ip("link set near0 down");
    plugAndUnplug("far1");
}

TEST_F(TheReachability, CountsATunnelOnlyWhileACableCarriesIt) {
    const int tunnel = open("/dev/net/tun", O_RDWR | O_CLOEXEC);
    if (tunnel < 0) {
        GTEST_SKIP() << "This machine has no tunnel device.";
    }
    ifreq request{};
    std::strcpy(request.ifr_name, "vpn0");
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    ASSERT_EQ(ioctl(tunnel, TUNSETIFF, &request), 0) << std::strerror(errno);
    ip("addr add 198.51.100.1/32 dev vpn0");
    ip("link set vpn0 up");
    ip("route add default dev vpn0 table 51820");
    EXPECT_FALSE(source.isReachable()) << "a tunnel through nothing";
    // A route to the other end of the tunnel, as when a VPN replaces the default route.
    ip("route add 203.0.113.9 via 192.0.0.2 dev near0");
    plugAndUnplug("far0");
    close(tunnel);
    EXPECT_TRUE(becomes(false)) << "the tunnel is gone";
}

TEST_F(TheReachability, IsNotGivenByADummyLink) {
    // Some VPNs block IPv6 in this way.
    if (!PrivateNetwork::ip("link add ipv6leakintrf0 type dummy")) {
        GTEST_SKIP() << "This kernel has no dummy links.";
    }
    ip("link set ipv6leakintrf0 up");
    ip("-6 route add default dev ipv6leakintrf0 metric 95");
    EXPECT_FALSE(source.isReachable());
    ip("route add default dev near0");
    plugAndUnplug("far0");
}

TEST_F(TheReachability, BelievesOnlyTheKernel) {
    ip("route add default dev near0");
    ASSERT_TRUE(becomes(true));
    source.close();
    RtnetlinkReachabilitySource asked{queue};
    asked.open();
    ASSERT_TRUE(asked.isReachable());
    const FileDescriptor liar(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    // The kernel gives the first socket of a process the process's number.
    sockaddr_nl us{};
    us.nl_family = AF_NETLINK;
    us.nl_pid = static_cast<unsigned>(getpid());
    for (unsigned number = 1; number < 20; ++number) {
        const nlmsghdr end{.nlmsg_len = sizeof end,
                           .nlmsg_type = NLMSG_DONE,
                           .nlmsg_flags = 0,
                           .nlmsg_seq = number,
                           .nlmsg_pid = 0};
        ASSERT_EQ(sendto(liar.get(), &end, sizeof end, MSG_DONTWAIT,
                         reinterpret_cast<const sockaddr*>(&us), sizeof us),
                  static_cast<ssize_t>(sizeof end))
            << number << ": " << std::strerror(errno);
    }
    EXPECT_TRUE(asked.isReachable());
}

TEST_F(TheReachability, IsFalseWhenClosedAndReadAgainWhenReopened) {
    ip("route add default dev near0");
    EXPECT_TRUE(becomes(true));
    source.close();
    EXPECT_FALSE(source.isReachable());
    source.open();
    EXPECT_TRUE(source.isReachable());
}

TEST_F(TheReachability, IsAnnouncedOnceForAnyNumberOfChangesSinceTheLastReading) {
    int announcements = 0;
    source.onAnnouncement([&] { ++announcements; });
    // The last ones are those in which the kernel removes a route without a report of it.
    for (const char* const change :
         {"link set far0 down", "link set far0 up", "-6 addr add 2001:db8:7::1/64 dev near1 nodad",
          "-6 route add default via 2001:db8:7::2 dev near1",
          "-6 route del default via 2001:db8:7::2 dev near1",
          "route add default dev near0 src 192.0.0.1", "addr del 192.0.0.1/24 dev near0",
          "route add default via 192.0.1.2 dev near1", "link set near1 down", "link del near0"}) {
        // A carrier may be reported late.
        while (runOnce(queue, std::chrono::milliseconds(100))) {
            source.isReachable();
        }
        announcements = 0;
        source.isReachable();
        EXPECT_TRUE(source.announcesChanges());
        ip(change);
        EXPECT_TRUE(runUntil(queue, [&] { return announcements == 1; })) << change;
        EXPECT_FALSE(source.announcesChanges());
    }
    source.isReachable();
    runReady(queue);
    source.isReachable();
    announcements = 0;
    for (int i = 0; i < 100; ++i) {
        ip("route add blackhole 10.0." + std::to_string(i) + ".0/24");
        runReady(queue);
    }
    EXPECT_EQ(announcements, 1);
    source.isReachable();
    source.close();
    ip("route add blackhole 10.1.0.0/24");
    runReady(queue);
    EXPECT_EQ(announcements, 1) << "closed";
    EXPECT_FALSE(source.announcesChanges());
}

TEST_F(TheReachability, ReadsOnlyTheBeginningOfAHugeTableAndSurvivesItsChanges) {
    const TemporaryFolder folder;
    {
        std::ofstream batch(folder / "routes");
        for (int i = 0; i < 30'000; ++i) {
            batch << "route add 10." << i / 250 << '.' << i % 250 << ".0/24 dev near1\n";
        }
    }
    ip("-batch " + (folder / "routes"));
    ip("route add default dev near0");
    EXPECT_TRUE(becomes(true));
    EXPECT_TRUE(source.isReachable());
    ip("route del default");
    EXPECT_FALSE(source.isReachable());
}

}  // namespace
}  // namespace chimewerk
