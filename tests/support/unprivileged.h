// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <string>

namespace chimewerk {

/// While it exists, file permissions apply to root too.
class Unprivileged {
public:
    Unprivileged() { become(kNobody); }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    ~Unprivileged() { become(kRoot); }

    static void permit(const std::string& file, mode_t mode) {
        become(kRoot);
        chmod(file.c_str(), mode);
        become(kNobody);
    }

private:
    static constexpr uid_t kRoot = 0;
    static constexpr uid_t kNobody = 65534;

    static void become(uid_t user) {
        uid_t real = 0;
        uid_t effective = 0;
        uid_t saved = 0;
        getresuid(&real, &effective, &saved);
        if (saved == kRoot) {
            [[maybe_unused]] const int status = setresuid(user, user, kRoot);
        }
    }
};

}  // namespace chimewerk
