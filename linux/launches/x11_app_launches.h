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

/// Takes the first window of a process in an X11 session for the launch of an application, from the list of
/// windows that the window manager keeps. Windows of this process do not count. The server and the window
/// manager may come late, go and come back. Main thread only; must not be destroyed from within its
/// callbacks.
class X11AppLaunches {
public:
    struct Callbacks {
        /// Whether the launch of this process is heard of in another way, and its windows say nothing new.
        std::function<bool(pid_t process)> isHeardElsewhere;
        std::function<void()> onLaunch;
    };

    /// `display` as in $DISPLAY. The queue outlives the object.
    X11AppLaunches(EpollMainQueue& queue, const std::string& display, Callbacks callbacks);

private:
    struct Atoms {
        xcb_atom_t clientList, pid, leader, type, dock, desktop;
    };

    bool open(xcb_connection_t* server, xcb_window_t root);
    std::vector<FirstWindows::Window> windows() const;
    std::vector<FirstWindows::Facts> factsAbout(
        const std::vector<FirstWindows::Window>& windows) const;
    std::optional<FirstWindows::Owner> ownerWithoutPid(FirstWindows::Window window) const;
    bool lives(FirstWindows::Owner owner) const;
    void announce(FirstWindows::Owner owner) const;

    const Callbacks callbacks_;
    Atoms atoms_{};
    FirstWindows firstWindows_;
    X11Link link_;
};

}  // namespace chimewerk
