// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/descriptor_limit.h"

#include <sys/resource.h>

#include <algorithm>
#include <limits>

namespace chimewerk {

unsigned long raiseDescriptorLimit() {
    constexpr rlim_t kUsual = 1024;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return std::numeric_limits<unsigned long>::max();
    }
    if (const rlim_t before = limit.rlim_cur; before < kUsual) {
        limit.rlim_cur = std::min(kUsual, limit.rlim_max);
        if (setrlimit(RLIMIT_NOFILE, &limit) != 0) {
            return before;
        }
    }
    return limit.rlim_cur;
}

}  // namespace chimewerk
