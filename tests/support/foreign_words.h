// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <regex>
#include <string>

namespace chimewerk {

/// Returns the first word in the text that has no meaning on this platform; empty if there is none.
inline std::string foreignWordIn(const std::string& text) {
    static const std::regex kForeign(
        "\\b(Macs?|macOS|Apple|Intel|Finder|Dock|Command|Accessibility|IOKit|SCNetwork\\w*|"
        "CGEventTap|[Tt]ap|osascript|UserDefaults|Library|dmg|[Uu]niversal|System Settings|System 7|"
        "menu bar|Monterey|Catalina)\\b|⌘|Silicon");
    std::smatch found;
    return std::regex_search(text, found, kForeign) ? found.str() : "";
}

}  // namespace chimewerk
