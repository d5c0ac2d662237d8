// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/retry_interval.h"
#include "linux/launches/toplevel_launches.h"

namespace chimewerk {

/// Reports the first window of each process in a Plasma session on Wayland, from the list that KWin
/// offers to programs whose desktop entry asks for it. Other Wayland protocols that list windows
/// do not name the process. KWin may go away and come back. Where the compositor has no such list,
/// nothing is reported. Main thread only; must not be destroyed from within its callback.
class PlasmaAppLaunches {
public:
    /// `display` has the form of $WAYLAND_DISPLAY. The queue must outlive the object.
    /// `retryInterval` is the time between two attempts to reach the compositor.
    PlasmaAppLaunches(EpollMainQueue& queue, const std::string& display,
                      ToplevelLaunches::OnFirstWindow onFirstWindow,
                      Seconds retryInterval = kRetryInterval);
    ~PlasmaAppLaunches();
    PlasmaAppLaunches(const PlasmaAppLaunches&) = delete;
    PlasmaAppLaunches& operator=(const PlasmaAppLaunches&) = delete;

    /// Returns whether the compositor offers its list.
    bool isHeard() const;

private:
    class List;
    std::unique_ptr<List> list_;
};

}  // namespace chimewerk
