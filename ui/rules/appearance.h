// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "platform/defaults_store.h"

namespace chimewerk {

/// The settings key for light or dark: a boolean, true for dark.
inline constexpr char kDarkModeKey[] = "ChimewerkDarkMode";

/// Returns whether the user has chosen dark.
bool storedDarkMode(const DefaultsStore& defaults);

/// An opaque grey: 0 is black, 1 is white.
struct Gray {
    double white;

    bool operator==(const Gray&) const = default;
};

/// The differences between the light and the dark dashboard, apart from the colours of texts
/// and controls.
struct Appearance {
    bool isDark;
    /// The title of the button that switches; it names the other appearance.
    std::string buttonTitle;
    /// None stands for the colour behind lists and text.
    std::optional<Gray> sidebarBackground;
    /// None stands for the colour of separators.
    std::optional<Gray> divider;
};

Appearance appearance(bool isDarkMode);

}  // namespace chimewerk
