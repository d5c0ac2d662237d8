// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/local_socket.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <utility>

namespace chimewerk {

FileDescriptor connectLocally(const std::string& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    FileDescriptor opened(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!opened || path.size() >= sizeof address.sun_path) {
        return {};
    }
    path.copy(&address.sun_path[0], path.size());
    const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
    return connect(opened.get(), generic, sizeof address) == 0 ? std::move(opened)
                                                               : FileDescriptor();
}

pid_t peerOf(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? peer.pid : 0;
}

}  // namespace chimewerk
