// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/appearance.h"

namespace chimewerk {

Appearance appearance(bool isDarkMode) {
    if (isDarkMode) {
        return {.isDark = true,
                .buttonTitle = "☀️  Light",
                .sidebarBackground = Gray{0.14},
                .divider = Gray{0.25}};
    }
    return {.isDark = false,
            .buttonTitle = "🌙  Dark",
            .sidebarBackground = std::nullopt,
            .divider = std::nullopt};
}

}  // namespace chimewerk
