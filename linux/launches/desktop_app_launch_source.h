// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <map>
#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/worker.h"
#include "linux/desktop/session_environment.h"
#include "linux/launches/app_launches.h"
#include "linux/launches/bus_name_launches.h"
#include "linux/launches/launch_facts.h"
#include "linux/launches/plasma_app_launches.h"
#include "linux/launches/process_status.h"
#include "linux/launches/sway_app_launches.h"
#include "linux/launches/systemd_app_launches.h"
#include "linux/launches/x11_app_launches.h"
#include "monitors/app_launch_monitor.h"
#include "platform/lifeline.h"
#include "platform/source_report.h"

namespace chimewerk {

/// Reports application launches. Several mechanisms run side by side, because none sees all: units
/// of the systemd user manager, in which desktops start applications; names on the session bus, under
/// which the bus starts others; and in an X11 session the first windows of processes. What they see is judged by one rule, which counts a launch once.
/// Without any, no launches are reported.
class DesktopAppLaunchSource final : public AppLaunchSource, public ReportsItself {
public:
    /// The queue must outlive the source.
    DesktopAppLaunchSource(EpollMainQueue& queue, SessionEnvironment environment);

    Token addObserver(std::function<void()> onLaunch) override;
    void removeObserver(Token token) override;
    SourceReport report() override;

private:
    void listen();
    void considerWindow(LaunchSign sign);
    void consider(LaunchSign sign);
    void decide(const LaunchSign& sign, const LaunchCandidate& candidate);
    void notifyObservers();

    EpollMainQueue& queue_;
    const SessionEnvironment environment_;
    std::map<Token, std::function<void()>> observers_;
    Token lastToken_ = 0;
    AppLaunches launches_{isRunning};
    const std::shared_ptr<const LaunchFacts> facts_;
    std::unique_ptr<SystemdAppLaunches> units_;
    std::unique_ptr<BusNameLaunches> names_;
    std::unique_ptr<X11AppLaunches> x11_;
    std::unique_ptr<SwayAppLaunches> sway_;
    std::unique_ptr<PlasmaAppLaunches> plasma_;
    Lifeline lifeline_;
    /// Reads facts.
    Worker worker_;
};

}  // namespace chimewerk
