// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/desktop_app_launch_source.h"

#include <unistd.h>

#include <cstdlib>
#include <utility>
#include <vector>

namespace chimewerk {

DesktopAppLaunchSource::DesktopAppLaunchSource(EpollMainQueue& queue,
                                               SessionEnvironment environment)
    : queue_(queue),
      environment_(std::move(environment)),
      facts_(std::make_shared<const LaunchFacts>(LaunchFacts::ofThisSession())) {}

AppLaunchSource::Token DesktopAppLaunchSource::addObserver(std::function<void()> onLaunch) {
    if (observers_.empty()) {
        listen();
    }
    observers_.emplace(++lastToken_, std::move(onLaunch));
    return lastToken_;
}

void DesktopAppLaunchSource::removeObserver(Token token) {
    observers_.erase(token);
    if (observers_.empty()) {
        x11_ = nullptr;
        sway_ = nullptr;
        plasma_ = nullptr;
        names_ = nullptr;
        units_ = nullptr;
    }
}

SourceReport DesktopAppLaunchSource::report() {
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    const std::string manager = std::string(folder == nullptr ? "" : folder) + "/systemd/private";
    const bool hasUnits = access(manager.c_str(), F_OK) == 0;
    SourceReport report{.mechanism = hasUnits ? "systemd units, bus names" : "bus names"};
    if (environment_.isX11()) {
        report.mechanism += ", X11 windows";
    } else if (!environment_.swaySocket.empty()) {
        report.mechanism += ", sway's windows";
    } else if (plasma_ && plasma_->isHeard()) {
        report.mechanism += ", KWin's windows";
    } else if (!hasUnits) {
        report.missing = "Without systemd, few applications are heard on Wayland.";
        report.advice = "Log in to a session of systemd, or to an X11 session.";
    }
    return report;
}

void DesktopAppLaunchSource::listen() {
    launches_.begin(bootTimeNow());
    units_ = std::make_unique<SystemdAppLaunches>(
        queue_, [this](LaunchSign sign) { consider(std::move(sign)); });
    names_ = std::make_unique<BusNameLaunches>(
        queue_, [this](LaunchSign sign) { consider(std::move(sign)); });
    const auto onFirstWindow = [this](LaunchSign sign) { considerWindow(std::move(sign)); };
    if (environment_.isX11()) {
        x11_ = std::make_unique<X11AppLaunches>(queue_, environment_.display, onFirstWindow);
    } else if (!environment_.swaySocket.empty()) {
        sway_ = std::make_unique<SwayAppLaunches>(queue_, environment_.swaySocket, onFirstWindow);
    } else if (!environment_.waylandDisplay.empty()) {
        plasma_ =
            std::make_unique<PlasmaAppLaunches>(queue_, environment_.waylandDisplay, onFirstWindow);
    }
}

/// Waits until a command would have ended. The program's own windows are no launches.
void DesktopAppLaunchSource::considerWindow(LaunchSign sign) {
    if (sign.processes != std::vector<pid_t>{getpid()}) {
        queue_.postAfter(AppLaunches::kShortestRun,
                         lifeline_.guard([this, sign = std::move(sign)]() mutable {
                             consider(std::move(sign));
                         }));
    }
}

/// Reads the facts about a sign, and decides on the main thread.
void DesktopAppLaunchSource::consider(LaunchSign sign) {
    auto decideHere = lifeline_.guard(
        [this, sign](const LaunchCandidate& candidate) { decide(sign, candidate); });
    worker_.post([&queue = queue_, facts = facts_, sign = std::move(sign),
                  decideHere = std::move(decideHere)](const std::stop_token& /*stop*/) {
        if (const auto candidate = facts->of(sign)) {
            queue.post([decideHere, candidate = *candidate]() mutable { decideHere(candidate); });
        }
    });
}

void DesktopAppLaunchSource::decide(const LaunchSign& sign, const LaunchCandidate& candidate) {
    if (launches_.isLaunch(candidate)) {
        notifyObservers();
    } else if (candidate.isWithoutWindow && sign.found == LaunchCandidate::Found::byBusName &&
               names_) {
        names_->awaitWindow(sign);
    }
}

/// Notifies the observers after the current event, because an observer may remove itself and
/// thereby destroy the caller.
void DesktopAppLaunchSource::notifyObservers() {
    queue_.post(lifeline_.guard([this] {
        const auto observers = observers_;
        for (const auto& [token, observer] : observers) {
            if (observers_.contains(token)) {
                observer();
            }
        }
    }));
}

}  // namespace chimewerk
