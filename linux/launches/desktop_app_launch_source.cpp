// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/desktop_app_launch_source.h"

#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "linux/launches/app_unit_launches.h"

namespace chimewerk {

DesktopAppLaunchSource::DesktopAppLaunchSource(EpollMainQueue& queue,
                                               SessionEnvironment environment)
    : queue_(queue), environment_(std::move(environment)) {}

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
        windows_ = nullptr;
        units_ = nullptr;
    }
}

void DesktopAppLaunchSource::listen() {
    units_ = std::make_unique<SystemdAppLaunches>(queue_, [this] { notifyObservers(); });
    if (environment_.isX11()) {
        windows_ = std::make_unique<X11AppLaunches>(
            queue_, environment_.display,
            X11AppLaunches::Callbacks{
                .isReportedElsewhere = [this](pid_t process) { return isInReportedUnit(process); },
                .onLaunch = [this] { notifyObservers(); }});
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

bool DesktopAppLaunchSource::isInReportedUnit(pid_t process) const {
    if (!units_->isSubscribed()) {
        return false;
    }
    std::ifstream file("/proc/" + std::to_string(process) + "/cgroup");
    return isInAppUnit(std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace chimewerk
