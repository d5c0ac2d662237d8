// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

namespace chimewerk {

/// Keeps the kernel from writing core dumps of this process and of those it starts: a dump would
/// contain the last keys pressed. Call once, before `allowCoreDumps()`.
void forbidCoreDumps();

/// Lets a process that this one has started write core dumps as this one could before.
void allowCoreDumps(pid_t process);

}  // namespace chimewerk
