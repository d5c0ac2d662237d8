#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace chimewerk {

/// A process that is killed when it is still running at the end of this object's life. One thread.
class ChildProcess {
public:
    /// Starts the program, looked up in the PATH, with these arguments, its own name first. Throws
    /// std::system_error.
    explicit ChildProcess(const std::vector<std::string>& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Waits for its end, and returns its exit status, or 128 and the number of the signal that ended it;
    /// none when it still runs after `timeout`.
    std::optional<int> waitFor(std::chrono::milliseconds timeout);
    /// Asks it to end.
    void terminate();

private:
    pid_t pid_ = -1;
    std::optional<int> status_;
};

/// Runs a shell command to its end; its exit status.
int runShell(const std::string& command);
/// What a shell command prints, without the line's end.
std::string outputOfShell(const std::string& command);

}  // namespace chimewerk
