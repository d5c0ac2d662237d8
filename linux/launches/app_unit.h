#pragma once

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

}  // namespace chimewerk
