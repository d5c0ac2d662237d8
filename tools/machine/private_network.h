// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace chimewerk {

/// A private network namespace with only a loopback link, which is down. The process can no longer
/// reach the machine's own links. Needs root, or a kernel that lets every user create namespaces.
class PrivateNetwork {
public:
    /// Enters a new namespace. Returns false if that is not allowed. Another call replaces
    /// the namespace.
    static bool enter() {
        if (unshare(CLONE_NEWNET) == 0) {
            return true;
        }
        const auto user = std::to_string(getuid());
        const auto group = std::to_string(getgid());
        if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
            return false;
        }
        // Maps this user to root in the namespace; otherwise programs started from here could not
        // change the network.
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
        return true;
    }

    /// Runs the program "ip" with these arguments. Returns false if it fails.
    static bool ip(const std::string& arguments) {
        const int status = std::system(("ip " + arguments).c_str());
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
};

}  // namespace chimewerk
