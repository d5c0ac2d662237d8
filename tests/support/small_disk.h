// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/resource.h>

#include <csignal>
#include <stdexcept>

namespace chimewerk {

/// While it exists, no file of this process can grow beyond a size limit; longer writes fail as on
/// a full disk.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t bytes) {
        if (getrlimit(RLIMIT_FSIZE, &before_) != 0) {
            throw std::runtime_error("no limits");
        }
        limit(bytes);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    void limit(rlim_t bytes) const {
        rlimit small = before_;
        small.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &small);
    }

    rlimit before_{};
    // Ignores the signal of a failed write, which would end the process.
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

}  // namespace chimewerk
