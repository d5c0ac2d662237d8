// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// The environment variables that describe the graphical session; empty where not set.
struct SessionEnvironment {
    /// $XDG_SESSION_TYPE
    std::string type;
    /// $WAYLAND_DISPLAY
    std::string waylandDisplay;
    /// $DISPLAY
    std::string display;
    /// $SWAYSOCK
    std::string swaySocket = {};

    /// Reads the environment of this process.
    static SessionEnvironment ofThisProcess();

    /// Returns whether `display` is the X server of the session itself, rather than one that only
    /// serves the X11 programs of a Wayland session.
    bool isX11() const;
};

}  // namespace chimewerk
