// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/toplevel_launches.h"

#include <cerrno>
#include <csignal>
#include <utility>

namespace chimewerk {

ToplevelLaunches::ToplevelLaunches(OnFirstWindow onFirstWindow)
    : onFirstWindow_(std::move(onFirstWindow)),
      firstWindows_({.factsOf = [this](const auto& windows) { return factsOf(windows); },
                     .isAlive =
                         [](FirstWindows::Owner owner) {
                             return kill(static_cast<pid_t>(owner), 0) == 0 || errno != ESRCH;
                         },
                     .onFirstWindow =
                         [this](FirstWindows::Owner owner, FirstWindows::Window window) {
                             onFirstWindow_({.found = LaunchCandidate::Found::byWindow,
                                             .processes = {static_cast<pid_t>(owner)},
                                             .application = toplevels_.at(window).application,
                                             .windowManager = compositor_});
                         }}) {}

void ToplevelLaunches::begin(pid_t compositor, Toplevels toplevels) {
    compositor_ = compositor;
    toplevels_ = std::move(toplevels);
    firstWindows_.begin(windows());
}

void ToplevelLaunches::add(FirstWindows::Window window, Toplevel toplevel) {
    toplevels_[window] = std::move(toplevel);
    firstWindows_.update(windows());
}

void ToplevelLaunches::remove(FirstWindows::Window window) {
    toplevels_.erase(window);
    firstWindows_.update(windows());
}

std::vector<FirstWindows::Facts> ToplevelLaunches::factsOf(
    const std::vector<FirstWindows::Window>& windows) const {
    std::vector<FirstWindows::Facts> facts;
    for (const auto window : windows) {
        const Toplevel& toplevel = toplevels_.at(window);
        FirstWindows::Facts known{.owner = std::nullopt, .role = toplevel.role};
        if (toplevel.process > 0) {
            known.owner = static_cast<FirstWindows::Owner>(toplevel.process);
        }
        facts.push_back(known);
    }
    return facts;
}

std::vector<FirstWindows::Window> ToplevelLaunches::windows() const {
    std::vector<FirstWindows::Window> windows;
    for (const auto& [window, toplevel] : toplevels_) {
        windows.push_back(window);
    }
    return windows;
}

}  // namespace chimewerk
