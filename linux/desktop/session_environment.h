#pragma once

#include <string>

namespace chimewerk {

/// What the environment says about the graphical session; empty strings for what it does not say.
struct SessionEnvironment {
    /// $XDG_SESSION_TYPE
    std::string type;
    /// $WAYLAND_DISPLAY
    std::string waylandDisplay;
    /// $DISPLAY
    std::string display;

    /// That of this process.
    static SessionEnvironment ofThisProcess();

    /// Whether the X server at `display` is the session's own, and not one that serves the X11 programs of a
    /// Wayland session and knows little of what goes on there.
    bool isX11() const;
};

}  // namespace chimewerk
