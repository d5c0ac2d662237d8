#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// The desktops' naming of the systemd units that applications run in:
/// app[-<launcher>]-<application>-<random>.scope and app[-<launcher>]-<application>[@<random>].service, where
/// the parts have their hyphens escaped.
struct AppUnit {
    /// Empty when the name says none.
    std::string launcher;
    std::string application;
    /// Started by the session at login rather than by the user.
    bool autostarted = false;

    /// Whether a unit of this name holds an application; slices and templates do not.
    static bool isOne(std::string_view unitName);
    /// For names that are one.
    static AppUnit parse(std::string_view unitName);
};

/// Whether one of the control groups in `cgroups`, the text of a process's /proc/PID/cgroup, is the unit of
/// an application.
bool isInAppUnit(std::string_view cgroups);

}  // namespace chimewerk
