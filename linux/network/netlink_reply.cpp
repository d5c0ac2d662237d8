// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/network/netlink_reply.h"

#include <linux/netlink.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "linux/network/bytes.h"

namespace chimewerk {

NetlinkReply::NetlinkReply(std::uint32_t sequence, Visitor visit)
    : sequence_(sequence), visit_(std::move(visit)) {}

NetlinkReply::State NetlinkReply::take(std::span<const std::byte> datagram, bool cut) {
    while (!datagram.empty()) {
        const auto header = readValue<nlmsghdr>(datagram);
        if (!header || header->nlmsg_len < sizeof *header || header->nlmsg_len > datagram.size()) {
            return State::failed;
        }
        if (header->nlmsg_seq == sequence_) {
            const State state =
                takeMessage(header->nlmsg_type, header->nlmsg_flags,
                            datagram.first(header->nlmsg_len).subspan(sizeof *header));
            if (state != State::unfinished) {
                return state;
            }
        }
        datagram = datagram.subspan(
            std::min<std::size_t>(datagram.size(), NLMSG_ALIGN(header->nlmsg_len)));
    }
    return cut ? State::failed : State::unfinished;
}

NetlinkReply::State NetlinkReply::takeMessage(std::uint16_t type, std::uint16_t flags,
                                              std::span<const std::byte> body) {
    if ((flags & NLM_F_DUMP_INTR) != 0) {
        interrupted_ = true;
    }
    switch (type) {
        case NLMSG_NOOP:
            return State::unfinished;
        case NLMSG_DONE:  // Carries an error number if the dump was cut short.
            return readValue<int>(body).value_or(0) < 0 ? State::refused : end();
        case NLMSG_ERROR:  // Error number 0 is an acknowledgement.
            return readValue<int>(body).value_or(-1) == 0 ? end() : State::refused;
        case NLMSG_OVERRUN:
            return State::failed;
        default:
            visit_(type, body);
            return (flags & NLM_F_MULTI) != 0 ? State::unfinished : end();
    }
}

}  // namespace chimewerk
