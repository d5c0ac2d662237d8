#include "demo/child_process.h"

#include <csignal>
#include <cstdio>
#include <memory>
#include <system_error>

#include <poll.h>
#include <spawn.h>
// This header of the C library forgets to say that its functions are C's.
extern "C" {
#include <sys/pidfd.h>
}
#include <sys/wait.h>
#include <unistd.h>

namespace chimewerk {

namespace {

int exitStatus(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Waits for the end of a child, at most so long; it stays to be reaped.
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

ChildProcess::ChildProcess(const std::vector<std::string>& command) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    if (const int error =
            posix_spawnp(&pid_, arguments[0], nullptr, nullptr, arguments.data(), environ);
        error != 0) {
        throw std::system_error(error, std::generic_category(), command[0]);
    }
}

ChildProcess::~ChildProcess() {
    if (!status_) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

std::optional<int> ChildProcess::waitFor(std::chrono::milliseconds timeout) {
    if (!status_ && endsWithin(pid_, timeout)) {
        int status = 0;
        waitpid(pid_, &status, 0);
        status_ = exitStatus(status);
    }
    return status_;
}

void ChildProcess::terminate() {
    if (!status_) {
        kill(pid_, SIGTERM);
    }
}

int runShell(const std::string& command) {
    ChildProcess shell({"sh", "-c", command});
    std::optional<int> status;
    while (!status) {
        status = shell.waitFor(std::chrono::hours(1));
    }
    return *status;
}

std::string outputOfShell(const std::string& command) {
    const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(command.c_str(), "re"), &pclose);
    std::string output;
    for (int next = pipe ? fgetc(pipe.get()) : EOF; next != EOF; next = fgetc(pipe.get())) {
        output += static_cast<char>(next);
    }
    while (output.ends_with('\n')) {
        output.pop_back();
    }
    return output;
}

}  // namespace chimewerk
