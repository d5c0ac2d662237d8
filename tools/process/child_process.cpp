// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/process/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <unistd.h>
// This header of the C library lacks `extern "C"`.
extern "C" {
#include <sys/pidfd.h>
}
#include <sys/wait.h>

#include <cerrno>
#include <system_error>

namespace chimewerk {

namespace {

/// Waits for the end of a child without reaping it. Returns false if it still runs after `timeout`.
bool endsWithin(pid_t pid, std::chrono::milliseconds timeout) {
    const int descriptor = pidfd_open(pid, 0);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "pidfd_open");
    }
    pollfd ended{descriptor, POLLIN, 0};
    const int ready = poll(&ended, 1, static_cast<int>(timeout.count()));
    close(descriptor);
    return ready > 0;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, Output output) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files{};
    posix_spawn_file_actions_init(&files);
    if (output == Output::discarded) {
        posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    if (posix_spawnp(&pid_, arguments[0], &files, nullptr, arguments.data(), environ) != 0) {
        pid_ = -1;
        status_ = 127;
    }
    posix_spawn_file_actions_destroy(&files);
}

std::optional<int> ChildProcess::waitFor(std::chrono::milliseconds timeout) {
    if (!status_ && endsWithin(pid_, timeout)) {
        int status = 0;
        waitpid(pid_, &status, 0);
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return status_;
}

void ChildProcess::end(int signal) {
    send(signal);
    if (!waitFor(std::chrono::seconds(5))) {
        send(SIGKILL);
        waitFor(std::chrono::seconds(5));
    }
}

void ChildProcess::send(int signal) const {
    if (!status_) {
        kill(pid_, signal);
    }
}

}  // namespace chimewerk
