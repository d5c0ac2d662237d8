// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "linux/launches/app_launches.h"
#include "linux/launches/desktop_entries.h"

namespace chimewerk {

/// A sign that an application may have been launched.
struct LaunchSign {
    LaunchCandidate::Found found = LaunchCandidate::Found::byWindow;
    /// The processes that it may be; empty if it runs on another machine.
    std::vector<pid_t> processes = {};
    /// A name of the application; may be empty. A unit's name says it better.
    std::string application = {};
    /// The unit that was started; empty if the sign is none.
    std::string unit = {};
    /// The application of a bus name has a window.
    bool hasWindow = false;
    /// The window manager of the X server, which starts programs at login; 0 if unknown.
    pid_t windowManager = 0;
};

/// Reads from the system what is known of a candidate. Any thread; reads many small files.
class LaunchFacts {
public:
    /// The entries of the applications, and those of what the session starts at login.
    LaunchFacts(DesktopEntries applications, DesktopEntries autostart);
    /// Uses the folders and the desktop that the environment names.
    static LaunchFacts ofThisSession();

    /// Returns none if no process of it is running.
    std::optional<LaunchCandidate> of(const LaunchSign& sign) const;

private:
    std::optional<DesktopEntry> entryOf(const LaunchCandidate& candidate,
                                        const std::vector<std::string>& programs) const;

    const DesktopEntries applications_;
    const DesktopEntries autostart_;
};

}  // namespace chimewerk
