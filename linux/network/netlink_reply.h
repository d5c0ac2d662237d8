#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace chimewerk {

/// Follows the datagrams in which the kernel answers one netlink question, and tells when and how the answer
/// ends. Any bytes may come in.
class NetlinkReply {
public:
    enum class State {
        /// More datagrams follow.
        unfinished,
        /// The answer is whole.
        complete,
        /// The answer has come to its end, but what it describes changed meanwhile: it may have gaps.
        interrupted,
        /// The kernel refuses to answer.
        refused,
        /// The kernel lost something, or the bytes make no sense. What further comes of this answer is of no
        /// use.
        failed,
    };
    /// Receives the type and the bytes behind the header of each message that is part of the answer.
    using Visitor = std::function<void(std::uint16_t type, std::span<const std::byte> body)>;

    /// `sequence` is the number that the question carried; messages with another one are left-overs of an
    /// earlier answer.
    NetlinkReply(std::uint32_t sequence, Visitor visit);

    /// Takes the next datagram; `cut` when it was longer than what was kept of it.
    State take(std::span<const std::byte> datagram, bool cut);

private:
    State takeMessage(std::uint16_t type, std::uint16_t flags, std::span<const std::byte> body);
    State end() const { return interrupted_ ? State::interrupted : State::complete; }

    const std::uint32_t sequence_;
    const Visitor visit_;
    bool interrupted_ = false;
};

}  // namespace chimewerk
