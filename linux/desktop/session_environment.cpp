// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/session_environment.h"

#include <cstdlib>

namespace chimewerk {

namespace {

std::string fromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace

SessionEnvironment SessionEnvironment::ofThisProcess() {
    return {.type = fromEnvironment("XDG_SESSION_TYPE"),
            .waylandDisplay = fromEnvironment("WAYLAND_DISPLAY"),
            .display = fromEnvironment("DISPLAY"),
            .swaySocket = fromEnvironment("SWAYSOCK")};
}

bool SessionEnvironment::isX11() const {
    if (display.empty() || type == "wayland") {
        return false;
    }
    // A session started by hand from a console is of type "tty".
    return type == "x11" || waylandDisplay.empty();
}

}  // namespace chimewerk
