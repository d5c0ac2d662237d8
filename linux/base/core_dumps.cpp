// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/core_dumps.h"

#include <sys/resource.h>

#include <optional>

namespace chimewerk {

namespace {

std::optional<rlimit> limitBefore;

}  // namespace

void forbidCoreDumps() {
    rlimit limit{};
    if (getrlimit(RLIMIT_CORE, &limit) == 0) {
        limitBefore = limit;
        // One byte, not none: where dumps are piped to a program, the kernel ignores all other
        // limits.
        limit.rlim_cur = limit.rlim_max > 0 ? 1 : 0;
        setrlimit(RLIMIT_CORE, &limit);
    }
}

void allowCoreDumps(pid_t process) {
    if (limitBefore) {
        prlimit(process, RLIMIT_CORE, &*limitBefore, nullptr);
    }
}

}  // namespace chimewerk
