// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "linux/launches/first_windows.h"
#include "linux/launches/launch_facts.h"

namespace chimewerk {

/// A window as a Wayland compositor describes it.
struct Toplevel {
    /// 0 if the compositor does not know it.
    pid_t process = 0;
    /// The application ID, or the class of an X11 window. May be empty.
    std::string application;
    FirstWindows::Role role = FirstWindows::Role::application;
};

/// Reports the first window of each process, from what a Wayland compositor tells of its windows.
/// Main thread only.
class ToplevelLaunches {
public:
    using OnFirstWindow = std::function<void(LaunchSign)>;
    using Toplevels = std::map<FirstWindows::Window, Toplevel>;

    explicit ToplevelLaunches(OnFirstWindow onFirstWindow);

    /// Forgets everything, and takes the owners of these windows as already running. `compositor`
    /// is the process that starts programs at login.
    void begin(pid_t compositor, Toplevels toplevels);
    /// A window has opened, with all that the compositor says of it.
    void add(FirstWindows::Window window, Toplevel toplevel);
    void remove(FirstWindows::Window window);

private:
    std::vector<FirstWindows::Facts> factsOf(
        const std::vector<FirstWindows::Window>& windows) const;
    std::vector<FirstWindows::Window> windows() const;

    const OnFirstWindow onFirstWindow_;
    pid_t compositor_ = 0;
    Toplevels toplevels_;
    FirstWindows firstWindows_;
};

}  // namespace chimewerk
