// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "linux/links/x11_link.h"

namespace chimewerk {

/// Requests of an extension of X servers that are sent without xcb's library for it, of which the
/// header alone is used. For two requests libxcb-xinput would take 116 KiB of memory. Main thread
/// only.
class X11Extension {
public:
    /// `name` is the one that servers give it. Each costs a little memory in every connection for
    /// good, so there is one for each extension.
    explicit constexpr X11Extension(const char* name) : id_{name, 0} {}
    X11Extension(const X11Extension&) = delete;
    X11Extension& operator=(const X11Extension&) = delete;

    /// Returns the number of its requests at this server; none if the server does not have it. To be
    /// called before the others, which end the connection of a server without it.
    std::optional<std::uint8_t> opcode(xcb_connection_t* server);

    /// The bytes of a request that is a structure.
    template <typename Request>
    static std::span<std::byte> bytesOf(Request& request) {
        return std::as_writable_bytes(std::span(&request, 1));
    }

    /// Sends a request and returns the answer; null for an error. The first four bytes of a request
    /// are filled in; its size is a multiple of four.
    template <typename Reply>
    XcbReply<Reply> ask(xcb_connection_t* server, std::uint8_t number,
                        std::span<std::byte> request) {
        return XcbReply<Reply>(static_cast<Reply*>(
            xcb_wait_for_reply(server, send(server, number, request, false), nullptr)));
    }

    /// Sends a request that has no answer. Returns whether the server has carried it out.
    bool tell(xcb_connection_t* server, std::uint8_t number, std::span<std::byte> request);

private:
    unsigned send(xcb_connection_t* server, std::uint8_t number, std::span<std::byte> request,
                  bool isWithoutReply);

    xcb_extension_t id_;
};

}  // namespace chimewerk
