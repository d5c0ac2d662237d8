// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <vector>

namespace chimewerk {

/// A program that runs beside this one and ends with the object. To be used from one thread.
class ChildProcess {
public:
    enum class Output { discarded, inherited };

    /// Starts `command[0]`, looked up in $PATH, with the other words as its arguments. `output`
    /// says what becomes of its standard output and standard error.
    explicit ChildProcess(const std::vector<std::string>& command,
                          Output output = Output::discarded);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { end(); }

    /// False when there is no such program.
    bool started() const { return pid_ > 0; }
    pid_t id() const { return pid_; }

    /// Waits for the end. Returns the exit status, or 128 plus the number of the signal that ended
    /// the process, or 127 when it was not started; nothing when it still runs after `timeout`.
    /// Throws std::system_error when the system has no descriptors left.
    std::optional<int> waitFor(std::chrono::milliseconds timeout);
    /// Sends SIGTERM and returns at once.
    void terminate() const { send(SIGTERM); }
    /// Sends `signal` and waits for the end. A process that still runs after 5 s is killed.
    void end(int signal = SIGTERM);

private:
    void send(int signal) const;

    pid_t pid_ = -1;
    std::optional<int> status_;
};

}  // namespace chimewerk
