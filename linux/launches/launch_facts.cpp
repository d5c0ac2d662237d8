// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/launch_facts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "linux/base/text_parts.h"
#include "linux/desktop/xdg_folders.h"
#include "linux/launches/app_unit.h"
#include "linux/launches/process_status.h"

namespace chimewerk {

namespace {

/// Names of the processes that start the programs of a session, as the kernel cuts them.
constexpr std::array<std::string_view, 9> kSessionManagers{
    "cinnamon-sessio", "gnome-session-b", "ksmserver",       "lxqt-session", "lxsession",
    "mate-session",    "plasma_session",  "startplasma-x11", "xfce4-session"};

/// Xfce's panel, desktop, keys and file manager. The session starts them, and they what the user
/// chooses.
constexpr std::array<std::string_view, 5> kLaunchers{"Thunar", "thunar", "xfce4-panel", "xfdesktop",
                                                     "xfsettingsd"};

bool isLauncher(const ProcessStatus& process) {
    return std::ranges::find(kLaunchers, std::string_view(process.name)) != kLaunchers.end();
}

bool isSessionManager(const ProcessStatus& process, pid_t windowManager) {
    return process.id.number == windowManager ||
           std::ranges::find(kSessionManagers, std::string_view(process.name)) !=
               kSessionManagers.end();
}

/// Returns the process that started first; of several in the same tick, the one with the lowest
/// number.
std::optional<ProcessStatus> eldest(const std::vector<pid_t>& numbers) {
    std::optional<ProcessStatus> first;
    for (const pid_t number : numbers) {
        const auto status = readProcessStatus(number);
        if (status && (!first || status->id.start < first->id.start ||
                       (status->id.start == first->id.start && number < first->id.number))) {
            first = status;
        }
    }
    return first;
}

/// Returns the parent, the grandparent and so on, without the system's first process.
std::vector<ProcessStatus> ancestorsOf(const ProcessStatus& process) {
    constexpr std::size_t kMost = 64;
    std::vector<ProcessStatus> ancestors;
    for (pid_t next = process.parent; next > 1 && ancestors.size() < kMost;
         next = ancestors.back().parent) {
        auto ancestor = readProcessStatus(next);
        if (!ancestor) {
            break;
        }
        ancestors.push_back(std::move(*ancestor));
    }
    return ancestors;
}

/// Returns whether only the system's first process, or the user's manager, stands above: as for
/// what a start-up script has left behind.
bool isOrphan(const std::vector<ProcessStatus>& ancestors) {
    return ancestors.empty() || ancestors.front().name == "systemd";
}

/// Returns whether the bus has started it to serve others: a search of the desktop asks it for
/// results, another application asks what it can do. A sandbox's proxy does not say.
bool isService(const ProcessStatus& process) {
    const auto arguments = readArguments(process.id.number);
    return process.name == "xdg-dbus-proxy" ||
           std::ranges::find(arguments, "--gapplication-service") != arguments.end();
}

std::vector<std::string> below(std::vector<std::string> folders, const char* name) {
    for (std::string& folder : folders) {
        folder += name;
    }
    return folders;
}

std::vector<std::string> currentDesktops() {
    const char* const value = std::getenv("XDG_CURRENT_DESKTOP");
    const auto names = split(value == nullptr ? "" : value, ':');
    return {names.begin(), names.end()};
}

/// The bus and the user's manager start applications as well as portals and prompts of the desktop.
bool isPartOfSession(const ControlGroup& group, const LaunchCandidate& candidate) {
    const bool isWindow = candidate.found == LaunchCandidate::Found::byWindow;
    if (group.isOfBus) {
        return isWindow && candidate.entry != LaunchCandidate::Entry::visible;
    }
    return group.isPartOfSession ||
           (isWindow && group.isOfService && candidate.entry == LaunchCandidate::Entry::hidden);
}

LaunchCandidate::Entry entryState(const std::optional<DesktopEntry>& entry) {
    using Entry = LaunchCandidate::Entry;
    if (!entry) {
        return Entry::none;
    }
    return entry->isVisible ? Entry::visible : Entry::hidden;
}

}  // namespace

LaunchFacts::LaunchFacts(DesktopEntries applications, DesktopEntries autostart)
    : applications_(std::move(applications)), autostart_(std::move(autostart)) {}

LaunchFacts LaunchFacts::ofThisSession() {
    const auto desktops = currentDesktops();
    return {DesktopEntries(below(xdgDataFolders(), "/applications"), desktops),
            DesktopEntries(below(xdgConfigFolders(), "/autostart"), desktops)};
}

/// A bus name is that of an application only if the entry of the same name says so.
std::optional<DesktopEntry> LaunchFacts::entryOf(const LaunchCandidate& candidate,
                                                 const std::vector<std::string>& programs) const {
    if (candidate.found != LaunchCandidate::Found::byBusName) {
        return applications_.find(candidate.application, programs);
    }
    auto entry = applications_.find(candidate.application);
    return entry && entry->isActivatable ? std::move(entry) : std::nullopt;
}

std::optional<LaunchCandidate> LaunchFacts::of(const LaunchSign& sign) const {
    LaunchCandidate candidate;
    candidate.found = sign.found;
    candidate.moment = bootTimeNow();
    candidate.application = sign.application;
    if (sign.processes.empty()) {
        return candidate;
    }
    const auto process = eldest(sign.processes);
    if (!process) {
        return std::nullopt;
    }
    candidate.process = process->id;
    const ControlGroup group = ControlGroup::parse(readControlGroups(process->id.number));
    candidate.unit = sign.unit.empty() ? group.appUnit : sign.unit;
    bool isOnlyInstance = false;
    if (!sign.unit.empty()) {
        const AppUnit unit = AppUnit::parse(sign.unit);
        candidate.application = unit.application;
        candidate.isAutostarted = unit.autostarted;
        isOnlyInstance = unit.isOnlyInstance;
    }
    const auto programs = readPrograms(process->id.number);
    const auto entry = entryOf(candidate, programs);
    candidate.entry = entryState(entry);
    candidate.isPartOfSession =
        isPartOfSession(group, candidate) || (entry && entry->isPartOfDesktop);

    const auto ancestors = ancestorsOf(*process);
    for (const ProcessStatus& ancestor : ancestors) {
        candidate.ancestors.push_back(ancestor.id);
    }
    candidate.isWithoutWindow =
        sign.found != LaunchCandidate::Found::byWindow && !sign.hasWindow &&
        (isService(*process) || (isOnlyInstance && entry && !entry->isActivatable));
    const auto manager = std::ranges::find_if(ancestors, [&](const ProcessStatus& ancestor) {
        return isSessionManager(ancestor, sign.windowManager);
    });
    if (std::any_of(ancestors.begin(), manager, isLauncher)) {
        return candidate;
    }
    if (manager != ancestors.end()) {
        candidate.sessionStart = manager->id.start;
        candidate.isAutostarted |= manager == ancestors.begin() &&
                                   autostart_.find(candidate.application, programs).has_value();
    } else if (sign.windowManager != 0 && candidate.unit.empty() && isOrphan(ancestors)) {
        if (const auto started = readProcessStatus(sign.windowManager)) {
            candidate.sessionStart = started->id.start;
        }
    }
    return candidate;
}

}  // namespace chimewerk
