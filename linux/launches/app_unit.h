// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// A systemd unit that an application runs in, read from its name. Desktops name it
/// app[-<launcher>]-<application>-<random>.scope or
/// app[-<launcher>]-<application>[@<random>].service, with escaped hyphens within the parts; snaps
/// name it snap.<snap>.<application>-<uuid>.scope.
struct AppUnit {
    /// Empty if the name has none; "snap" for a snap.
    std::string launcher;
    /// Usually the name of the desktop entry without its ending.
    std::string application;
    /// Started at login by the session rather than by the user.
    bool autostarted = false;
    /// Has a fixed name, and so was not made for a launch: such a service is started by the bus.
    bool isOnlyInstance = false;

    /// Returns whether a unit with this name runs an application. Slices and templates do not; nor
    /// do the units of programs that the bus has started, whose bus names say more.
    static bool isOne(std::string_view unitName);
    /// Parses a name for which `isOne()` is true.
    static AppUnit parse(std::string_view unitName);
};

/// Where the text of /proc/PID/cgroup puts a process.
struct ControlGroup {
    /// The name of the application's unit; empty outside of one.
    std::string appUnit;
    /// In session.slice or background.slice, which hold the desktop itself and its helpers.
    bool isPartOfSession = false;
    /// Started by the bus, which runs in session.slice itself, or in a unit that the bus has made.
    bool isOfBus = false;
    /// In a service that is none of an application.
    bool isOfService = false;

    static ControlGroup parse(std::string_view text);
};

}  // namespace chimewerk
