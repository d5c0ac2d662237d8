// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace chimewerk {

/// Reads the datagrams of the kernel's answer to one netlink request and determines when and how
/// the answer ends. Accepts any bytes.
class NetlinkReply {
public:
    enum class State {
        /// More datagrams follow.
        unfinished,
        /// The answer is complete.
        complete,
        /// The answer has ended, but the data changed meanwhile, so it may have gaps.
        interrupted,
        /// The kernel refused the request.
        refused,
        /// The kernel lost data, or the bytes are malformed. Discard the rest of this answer.
        failed,
    };
    /// Receives the type and the payload of each message of the answer.
    using Visitor = std::function<void(std::uint16_t type, std::span<const std::byte> body)>;

    /// `sequence` is the number of the request. Messages with another number are left over from an
    /// earlier answer and are skipped.
    NetlinkReply(std::uint32_t sequence, Visitor visit);

    /// Reads the next datagram. `cut` means that it was truncated on receipt.
    State take(std::span<const std::byte> datagram, bool cut);

private:
    State takeMessage(std::uint16_t type, std::uint16_t flags, std::span<const std::byte> body);
    State end() const { return interrupted_ ? State::interrupted : State::complete; }

    const std::uint32_t sequence_;
    const Visitor visit_;
    bool interrupted_ = false;
};

}  // namespace chimewerk
