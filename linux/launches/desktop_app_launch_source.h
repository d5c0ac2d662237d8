// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <functional>
#include <map>
#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/desktop/session_environment.h"
#include "linux/launches/systemd_app_launches.h"
#include "linux/launches/x11_app_launches.h"
#include "monitors/app_launch_monitor.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// Reports application launches from the systemd units in which desktops start applications and, in
/// an X11 session, from the first windows of processes outside such units. Both run side by side
/// because a running systemd does not mean that the desktop uses it: a plain window manager starts
/// programs itself. Without either, no launches are reported.
class DesktopAppLaunchSource final : public AppLaunchSource {
public:
    /// The queue must outlive the source.
    DesktopAppLaunchSource(EpollMainQueue& queue, SessionEnvironment environment);

    Token addObserver(std::function<void()> onLaunch) override;
    void removeObserver(Token token) override;

private:
    void listen();
    void notifyObservers();
    bool isInReportedUnit(pid_t process) const;

    EpollMainQueue& queue_;
    const SessionEnvironment environment_;
    std::map<Token, std::function<void()>> observers_;
    Token lastToken_ = 0;
    std::unique_ptr<SystemdAppLaunches> units_;
    std::unique_ptr<X11AppLaunches> windows_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
