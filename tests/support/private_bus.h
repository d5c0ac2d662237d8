// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "linux/base/file_descriptor.h"
#include "tools/files/temporary_folder.h"
#include "tools/process/child_process.h"
#include "tools/process/eventually.h"

namespace chimewerk {

/// A private message bus that replaces the session or system bus and can be killed. Not running
/// until started.
class PrivateBus {
public:
    /// `variable` names the bus: DBUS_SESSION_BUS_ADDRESS or DBUS_SYSTEM_BUS_ADDRESS.
    explicit PrivateBus(const char* variable) : variable_(variable) {
        const char* const before = std::getenv(variable);
        before_ = before == nullptr ? "" : before;
        setenv(variable, ("unix:path=" + path()).c_str(), 1);
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() { setenv(variable_.c_str(), before_.c_str(), 1); }

    /// Starts the bus. Returns whether it accepts connections.
    bool start() {
        daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork",
                                                 "--address=unix:path=" + path()});
        return daemon_->started() && eventually([this] { return acceptsConnections(); });
    }
    void kill(int signal = SIGKILL) {
        daemon_->end(signal);
        unlink(path().c_str());
    }

    std::string path() const { return folder_ / "bus"; }

private:
    bool acceptsConnections() const {
        const FileDescriptor caller(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        path().copy(address.sun_path, sizeof address.sun_path - 1);
        return connect(caller.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
               0;
    }

    const std::string variable_;
    std::string before_;
    TemporaryFolder folder_;
    std::optional<ChildProcess> daemon_;
};

}  // namespace chimewerk
