#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

namespace chimewerk {

/// A program that runs beside the test, and is ended with the object.
class ChildProcess {
public:
    /// The program is looked for in $PATH. `started()` is false when there is none.
    explicit ChildProcess(std::vector<std::string> command) {
        std::vector<char*> arguments;
        for (std::string& word : command) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t quiet{};
        posix_spawn_file_actions_init(&quiet);
        posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&quiet, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        if (posix_spawnp(&process_, arguments[0], &quiet, nullptr, arguments.data(), environ) !=
            0) {
            process_ = -1;
        }
        posix_spawn_file_actions_destroy(&quiet);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { end(); }

    bool started() const { return process_ > 0; }
    pid_t id() const { return process_; }

    /// Ends it with this signal and returns when it has ended.
    void end(int signal = SIGTERM) {
        if (started()) {
            kill(process_, signal);
            waitpid(process_, nullptr, 0);
            process_ = -1;
        }
    }

private:
    pid_t process_ = -1;
};

}  // namespace chimewerk
