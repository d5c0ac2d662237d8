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

/// A network of the test's own, empty but for a loopback link that is down. The machine's own
/// links are out of reach of this process from then on. Needs root, or a kernel that lets
/// everybody make namespaces.
class PrivateNetwork {
public:
    /// Enters a new one; false where that is not allowed. A later call replaces it.
    static bool enter() {
        if (unshare(CLONE_NEWNET) == 0) {
            return true;
        }
        const auto user = std::to_string(getuid());
        const auto group = std::to_string(getgid());
        if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
            return false;
        }
        // Without being root in there, a program that is started would lose the right to change
        // the network.
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
        return true;
    }

    /// Runs the program "ip" with these arguments; false when it fails.
    static bool ip(const std::string& arguments) {
        const int status = std::system(("ip " + arguments).c_str());
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
};

}  // namespace chimewerk
