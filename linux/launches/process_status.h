// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "linux/launches/app_launches.h"

namespace chimewerk {

/// What /proc says of a running process.
struct ProcessStatus {
    ProcessId id;
    pid_t parent = 0;
    /// At most 15 bytes.
    std::string name;
};

/// Returns none if there is no such process, or if it has ended and only waits for its parent. Any
/// thread.
std::optional<ProcessStatus> readProcessStatus(pid_t number);

/// Returns whether the process has not ended. Any thread.
bool isRunning(const ProcessId& process);

/// Returns the text of /proc/PID/cgroup; empty if there is no such process. Any thread.
std::string readControlGroups(pid_t number);

/// Returns the command line; empty if there is no such process. Any thread.
std::vector<std::string> readArguments(pid_t number);

/// Returns the file names of what the process runs: its program, and the script that an
/// interpreter runs. Any thread.
std::vector<std::string> readPrograms(pid_t number);

/// Returns the time since the machine was booted, in the resolution of a process's start.
BootTime bootTimeNow();

}  // namespace chimewerk
