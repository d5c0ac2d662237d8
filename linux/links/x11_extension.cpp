// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/links/x11_extension.h"

#include <sys/uio.h>

#include <array>

namespace chimewerk {

std::optional<std::uint8_t> X11Extension::opcode(xcb_connection_t* server) {
    const auto* const found = xcb_get_extension_data(server, &id_);
    return found != nullptr && found->present != 0 ? std::optional(found->major_opcode)
                                                   : std::nullopt;
}

bool X11Extension::tell(xcb_connection_t* server, std::uint8_t number,
                        std::span<std::byte> request) {
    const XcbReply<xcb_generic_error_t> error(
        xcb_request_check(server, {send(server, number, request, true)}));
    return error == nullptr;
}

unsigned X11Extension::send(xcb_connection_t* server, std::uint8_t number,
                            std::span<std::byte> request, bool isWithoutReply) {
    const xcb_protocol_request_t kind{.count = 1,
                                      .ext = &id_,
                                      .opcode = number,
                                      .isvoid = static_cast<std::uint8_t>(isWithoutReply ? 1 : 0)};
    // xcb puts two parts of its own in front.
    std::array<iovec, 3> parts{};
    parts[2] = {.iov_base = request.data(), .iov_len = request.size()};
    return xcb_send_request(server, XCB_REQUEST_CHECKED, &parts[2], &kind);
}

}  // namespace chimewerk
