// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/launches/first_windows.h"
#include "linux/links/x11_link.h"

namespace chimewerk {

/// Reports the first window of a process in an X11 session as an application launch, from the
/// window manager's list of windows. Windows of this process do not count. The server and the
/// window manager may come late, go away and come back. Main thread only; must not be destroyed
/// from within its callbacks.
class X11AppLaunches {
public:
    struct Callbacks {
        /// Returns whether launches of this process are already reported by another source.
        std::function<bool(pid_t process)> isReportedElsewhere;
        std::function<void()> onLaunch;
    };

    /// `display` has the form of $DISPLAY. The queue must outlive the object. `retryInterval` is
    /// the time between two attempts to reach the server.
    X11AppLaunches(EpollMainQueue& queue, const std::string& display, Callbacks callbacks,
                   Seconds retryInterval = kRetryInterval);

private:
    struct Atoms {
        xcb_atom_t clientList, pid, leader, type, dock, desktop;
    };

    bool open(xcb_connection_t* server, xcb_window_t root);
    std::vector<FirstWindows::Window> windows() const;
    std::vector<FirstWindows::Facts> factsOf(
        const std::vector<FirstWindows::Window>& windows) const;
    std::optional<FirstWindows::Owner> ownerWithoutPid(FirstWindows::Window window) const;
    bool isAlive(FirstWindows::Owner owner) const;
    void announce(FirstWindows::Owner owner) const;

    const Callbacks callbacks_;
    Atoms atoms_{};
    FirstWindows firstWindows_;
    X11Link link_;
};

}  // namespace chimewerk
