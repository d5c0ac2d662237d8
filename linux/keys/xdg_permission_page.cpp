// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/xdg_permission_page.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

#include "linux/base/core_dumps.h"

namespace chimewerk {

namespace {

/// Spawn attributes for a process that outlives this one: own session, /dev/null as its streams,
/// default signals.
class DetachedStart {
public:
    DetachedStart() {
        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigaddset(&signals, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        posix_spawnattr_setflags(
            &attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        posix_spawn_file_actions_init(&files);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0);
        }
    }
    DetachedStart(const DetachedStart&) = delete;
    DetachedStart& operator=(const DetachedStart&) = delete;
    ~DetachedStart() {
        posix_spawn_file_actions_destroy(&files);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawnattr_t attributes{};
    posix_spawn_file_actions_t files{};
};

}  // namespace

/// A running xdg-open; it may run as long as the page is open.
struct XdgPermissionPage::Opener {
    pid_t process = -1;
    FileDescriptor end;  // A pidfd: readable once the process has ended.
    std::unique_ptr<EpollMainQueue::Watch> watch = nullptr;
};

XdgPermissionPage::XdgPermissionPage(EpollMainQueue& queue, std::string file)
    : queue_(queue), file_(std::move(file)) {}

XdgPermissionPage::~XdgPermissionPage() = default;

void XdgPermissionPage::show() {
    const DetachedStart start;
    std::string program = "xdg-open";
    std::string page = file_;
    const std::array<char*, 3> arguments{program.data(), page.data(), nullptr};
    pid_t process = -1;
    if (posix_spawnp(&process, program.c_str(), &start.files, &start.attributes, arguments.data(),
                     environ) != 0) {
        return;
    }
    allowCoreDumps(process);
    const auto opener = running_.insert(
        running_.end(),
        {.process = process,
         .end = FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)))});
    opener->watch = queue_.watch(opener->end.get(), [this, opener] { reap(opener); });
}

void XdgPermissionPage::reap(std::list<Opener>::iterator opener) {
    waitpid(opener->process, nullptr, WNOHANG);
    running_.erase(opener);
}

}  // namespace chimewerk
