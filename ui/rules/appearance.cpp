// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/appearance.h"

namespace chimewerk {

bool storedDarkMode(const DefaultsStore& defaults) {
    const std::optional<DefaultsValue> stored = defaults.object(kDarkModeKey);
    const bool* const dark = stored ? std::get_if<bool>(&stored->value) : nullptr;
    return dark != nullptr && *dark;
}

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
