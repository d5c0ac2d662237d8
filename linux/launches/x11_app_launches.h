// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/launches/first_windows.h"
#include "linux/launches/launch_facts.h"
#include "linux/links/x11_link.h"

namespace chimewerk {

/// Reports the first window of each process in an X11 session, from the window manager's list of
/// windows. The server says which process owns a window, because a sandboxed one knows only its
/// number within the sandbox. The server and the window manager may come late, go away and come
/// back. Main thread only; must not be destroyed from within its callback.
class X11AppLaunches {
public:
    using OnFirstWindow = std::function<void(LaunchSign)>;

    /// `display` has the form of $DISPLAY. The queue must outlive the object. `retryInterval` is
    /// the time between two attempts to reach the server.
    X11AppLaunches(EpollMainQueue& queue, const std::string& display, OnFirstWindow onFirstWindow,
                   Seconds retryInterval = kRetryInterval);

private:
    struct Atoms {
        xcb_atom_t clientList, managerWindow, pid, leader, type, dock, desktop, normal, kdeOverride,
            state, skipTaskbar, gtkApplication, utf8;
    };
    using Processes = std::map<FirstWindows::Window, std::uint32_t>;

    bool open(xcb_connection_t* server, xcb_window_t root);
    std::vector<FirstWindows::Window> windows() const;
    std::vector<FirstWindows::Facts> factsOf(
        const std::vector<FirstWindows::Window>& windows) const;
    Processes processesOf(const std::vector<FirstWindows::Window>& windows) const;
    FirstWindows::Role roleOf(const std::vector<std::uint32_t>& types,
                              const std::vector<std::uint32_t>& states, bool isTransient) const;
    std::optional<FirstWindows::Owner> ownerWithoutPid(FirstWindows::Window window) const;
    bool isAlive(FirstWindows::Owner owner) const;
    pid_t windowManager() const;
    std::string applicationOf(FirstWindows::Window window) const;
    void announce(FirstWindows::Owner owner, FirstWindows::Window window) const;

    const OnFirstWindow onFirstWindow_;
    const std::string host_;
    Atoms atoms_{};
    /// The server knows the processes of its clients.
    bool knowsProcesses_ = false;
    FirstWindows firstWindows_;
    X11Link link_;
};

}  // namespace chimewerk
