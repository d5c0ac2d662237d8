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

/// A child process that ends with this object. Use it from one thread.
class ChildProcess {
public:
    enum class Output { discarded, inherited };

    /// Starts `command[0]`, looked up in $PATH, with the other words as its arguments. `output`
    /// applies to its standard output and standard error.
    explicit ChildProcess(const std::vector<std::string>& command,
                          Output output = Output::discarded);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { end(); }

    /// Returns false if the program could not be started.
    bool started() const { return pid_ > 0; }
    pid_t id() const { return pid_; }

    /// Waits for the process to end. Returns its exit status; 128 plus the signal number if a
    /// signal ended it; 127 if it was not started; none if it still runs after `timeout`. Throws
    /// std::system_error if no descriptors are left.
    std::optional<int> waitFor(std::chrono::milliseconds timeout);
    /// Sends SIGTERM and returns at once.
    void terminate() const { send(SIGTERM); }
    /// Sends `signal` and waits for the process to end. Kills it if it still runs after 5 s.
    void end(int signal = SIGTERM);

private:
    void send(int signal) const;

    pid_t pid_ = -1;
    std::optional<int> status_;
};

}  // namespace chimewerk
