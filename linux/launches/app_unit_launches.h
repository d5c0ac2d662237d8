// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <map>
#include <string>
#include <string_view>

namespace chimewerk {

/// A systemd unit that a desktop runs an application in, read from its name:
/// app[-<launcher>]-<application>-<random>.scope or
/// app[-<launcher>]-<application>[@<random>].service. Hyphens within the parts are escaped.
struct AppUnit {
    /// Empty if the name has none.
    std::string launcher;
    std::string application;
    /// Started at login by the session rather than by the user.
    bool autostarted = false;

    /// Returns whether a unit with this name runs an application; slices and templates do not.
    static bool isOne(std::string_view unitName);
    /// Parses a name for which `isOne()` is true.
    static AppUnit parse(std::string_view unitName);
};

/// Returns whether one of the control groups in `cgroups`, the text of /proc/PID/cgroup, is an
/// application's unit.
bool isInAppUnit(std::string_view cgroups);

/// Decides which unit starts are application launches. Moments are times of the monotonic clock.
class AppUnitLaunches {
public:
    using Moment = std::chrono::microseconds;

    /// Forgets all units; units that became active before `now` do not count as launches.
    void begin(Moment now);

    /// Returns whether `unitName`, last activated at `activeSince`, is a launch not yet reported.
    /// Not counted: units active since before the beginning; units that the session starts at
    /// login, which are mostly background helpers; and the sandbox of an application just launched,
    /// which is a second unit for the same application.
    bool isLaunch(const std::string& unitName, Moment activeSince);

    /// Forgets a unit that no longer exists.
    void forget(const std::string& unitName) { activeSince_.erase(unitName); }

    /// Returns the number of remembered units.
    std::size_t remembered() const { return activeSince_.size(); }

private:
    Moment begin_{0};
    std::map<std::string, Moment> activeSince_;
    AppUnit last_;
    Moment lastAt_{0};
};

}  // namespace chimewerk
