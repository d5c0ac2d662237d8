// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/app_launches.h"

#include <strings.h>

#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

using Found = LaunchCandidate::Found;
using std::chrono::seconds;

/// What a session starts by itself, it starts within this time.
constexpr seconds kLogin{60};
/// A program opens its first window within this time.
constexpr seconds kFirstWindow{60};
/// A program puts itself into a second unit, and gets its bus name, within this time.
constexpr seconds kSecondSign{5};

std::string lastPart(const std::string& name) {
    return name.substr(name.rfind('.') + 1);
}

bool equal(const std::string& one, const std::string& other) {
    return strcasecmp(one.c_str(), other.c_str()) == 0;
}

/// Returns whether two names may be those of one application. Windows often have only the last part
/// of "org.kde.dolphin".
bool areOneApplication(const std::string& one, const std::string& other) {
    return !one.empty() && !other.empty() &&
           (equal(one, other) || equal(lastPart(one), other) || equal(one, lastPart(other)));
}

bool isStartedBySession(const LaunchCandidate& candidate) {
    return candidate.isAutostarted ||
           (candidate.sessionStart && candidate.moment - *candidate.sessionStart < kLogin);
}

}  // namespace

void AppLaunches::Launch::add(const LaunchCandidate& sign) {
    processes.insert(sign.process);
    if (!sign.unit.empty()) {
        units.insert(sign.unit);
    }
    hasWindow |= sign.found == Found::byWindow;
}

/// Returns whether another process shows the same launch: as one that a wrapper has started, or
/// that the program has started to do its work.
bool AppLaunches::Launch::isSignedBy(const LaunchCandidate& candidate) const {
    const bool isDescendant = std::ranges::any_of(
        candidate.ancestors,
        [this](const ProcessId& ancestor) { return processes.contains(ancestor); });
    const bool isInUnit = units.contains(candidate.unit);
    const bool hasName = areOneApplication(application, candidate.application);
    const BootTime age = candidate.moment - at;
    switch (candidate.found) {
        case Found::inUnit:
            return (isDescendant && (hasName || age < kSecondSign)) ||
                   (hasName && found != Found::inUnit && age < kSecondSign);
        case Found::byWindow:
            // A terminal has its window; the next one belongs to what was typed there.
            return !hasWindow && age < kFirstWindow && (isDescendant || isInUnit || hasName);
        case Found::byBusName:
            return hasName && (isDescendant || isInUnit || age < kSecondSign);
    }
    return false;
}

AppLaunches::AppLaunches(std::function<bool(const ProcessId&)> isRunning)
    : isRunning_(std::move(isRunning)) {}

void AppLaunches::begin(BootTime now) {
    begin_ = now;
    launches_.clear();
}

bool AppLaunches::isLaunch(const LaunchCandidate& candidate) {
    if (candidate.process.number == 0) {
        return candidate.found == Found::byWindow;
    }
    forgetEnded(candidate.moment);
    const bool isWindow = candidate.found == Found::byWindow;
    const bool needsEntry = !isWindow && !candidate.isAutostarted;
    // A program that has waited without a window, such as a file manager, may be opened later.
    const bool wasRunning = !isWindow && candidate.process.start < begin_;
    if (candidate.isPartOfSession || candidate.isWithoutWindow || wasRunning ||
        !isRunning_(candidate.process) ||
        (needsEntry && candidate.entry != LaunchCandidate::Entry::visible)) {
        return false;
    }
    if (Launch* const known = launchOf(candidate)) {
        known->add(candidate);
        return false;
    }
    launches_.push_back({.found = candidate.found,
                         .at = candidate.moment,
                         .application = candidate.application,
                         .processes = {},
                         .units = {}});
    launches_.back().add(candidate);
    return !isStartedBySession(candidate);
}

/// Forgets launches of which no process runs, once no late window can come.
void AppLaunches::forgetEnded(BootTime now) {
    std::erase_if(launches_, [&](Launch& launch) {
        std::erase_if(launch.processes, [&](const ProcessId& process) {
            return now - launch.at >= kFirstWindow && !isRunning_(process);
        });
        return launch.processes.empty();
    });
}

/// Returns the counted launch that the candidate belongs to, the latest of several; null if it is
/// a new one.
AppLaunches::Launch* AppLaunches::launchOf(const LaunchCandidate& candidate) {
    auto known = std::ranges::find_if(launches_, [&](const Launch& launch) {
        return launch.processes.contains(candidate.process);
    });
    if (known != launches_.end()) {
        return &*known;
    }
    const auto latest =
        std::find_if(launches_.rbegin(), launches_.rend(),
                     [&](const Launch& launch) { return launch.isSignedBy(candidate); });
    return latest == launches_.rend() ? nullptr : &*latest;
}

}  // namespace chimewerk
