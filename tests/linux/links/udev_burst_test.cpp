#include <linux/netlink.h>
#include <netinet/in.h>
#include <sys/mount.h>
#include <sys/socket.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/devices/udev_usb_arrival_source.h"
#include "tools/machine/private_network.h"

namespace chimewerk {
namespace {

/// The hash by which udev's messages are filtered in the kernel: 32-bit MurmurHash2, as the messages' format
/// wants it.
std::uint32_t hashOf(const std::string& text) {
    constexpr std::uint32_t kMultiplier = 0x5bd1e995;
    auto hash = static_cast<std::uint32_t>(text.size());
    std::size_t at = 0;
    for (; at + 4 <= text.size(); at += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, text.data() + at, 4);
        word *= kMultiplier;
        word ^= word >> 24U;
        hash = (hash * kMultiplier) ^ (word * kMultiplier);
    }
    if (at < text.size()) {
        for (std::size_t i = text.size(); i > at; --i) {
            hash ^= std::uint32_t{static_cast<unsigned char>(text[i - 1])} << (8 * (i - 1 - at));
        }
        hash *= kMultiplier;
    }
    hash ^= hash >> 13U;
    hash *= kMultiplier;
    return hash ^ (hash >> 15U);
}

/// The udev daemon of a network of the test's own, where the machine's daemon is not heard.
class UdevDaemon {
public:
    static bool start() {
        if (!PrivateNetwork::enter() || unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", "/run", "tmpfs", 0, nullptr) != 0) {
            return false;
        }
        // Without it nobody expects a daemon.
        std::filesystem::create_directories("/run/udev");
        std::ofstream("/run/udev/control") << "";
        return true;
    }

    /// Announces a device that was added. A message that nobody has room for is lost.
    void announce(int number) {
        std::string properties;
        for (const std::string& property :
             {std::string("ACTION=add"), "DEVPATH=/devices/usb" + std::to_string(number),
              std::string("SUBSYSTEM=usb"), std::string("DEVTYPE=usb_device"),
              "SEQNUM=" + std::to_string(++sequence_)}) {
            properties.append(property).push_back('\0');
        }
        const Header header{.magic = htonl(0xfeedcafe),
                            .propertiesLength = static_cast<std::uint32_t>(properties.size()),
                            .subsystemHash = htonl(hashOf("usb")),
                            .deviceTypeHash = htonl(hashOf("usb_device"))};
        std::string message(sizeof header, '\0');
        std::memcpy(message.data(), &header, sizeof header);
        message += properties;
        sockaddr_nl everybody{.nl_family = AF_NETLINK, .nl_pad = 0, .nl_pid = 0, .nl_groups = 2};
        sockaddr address{};
        std::memcpy(&address, &everybody, sizeof everybody);
        sendto(socket_.get(), message.data(), message.size(), 0, &address, sizeof everybody);
    }

private:
    struct Header {
        char prefix[8] = {'l', 'i', 'b', 'u', 'd', 'e', 'v', '\0'};
        std::uint32_t magic;
        std::uint32_t headerSize = sizeof(Header);
        std::uint32_t propertiesOffset = sizeof(Header);
        std::uint32_t propertiesLength;
        std::uint32_t subsystemHash;
        std::uint32_t deviceTypeHash;
        std::uint32_t tagsHigh = 0;
        std::uint32_t tagsLow = 0;
    };

    FileDescriptor socket_{socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT)};
    int sequence_ = 0;
};

TEST(UsbArrivalsInABurst, AreHeardAlthoughSomeAreLostAndSoIsTheNextOne) {
    if (!UdevDaemon::start()) {
        GTEST_SKIP() << "This user may not make namespaces; root may.";
    }
    EpollMainQueue queue;
    UdevUsbArrivalSource source(queue);
    int calls = 0;
    ASSERT_TRUE(source.open([&] { ++calls; }));
    const auto heard = [&] {
        for (int i = 0; i < 1000; ++i) {
            queue.dispatch();
        }
        return std::exchange(calls, 0);
    };
    UdevDaemon daemon;
    daemon.announce(1);
    ASSERT_EQ(heard(), 1);

    constexpr int kDevices = 20'000;  // Several times what the kernel keeps.
    for (int i = 0; i < kDevices; ++i) {
        daemon.announce(i);
    }
    const int inBurst = heard();
    EXPECT_GE(inBurst, 1);
    EXPECT_LE(inBurst, kDevices / 256) << "they share calls";
    daemon.announce(2);
    EXPECT_EQ(heard(), 1);
}

}  // namespace
}  // namespace chimewerk
