#pragma once

#include <optional>
#include <string>

namespace chimewerk {

/// The stored choice between light and dark: a boolean, true for dark.
inline constexpr char kDarkModeKey[] = "ChimewerkDarkMode";

/// An opaque grey: 0 is black, 1 is white.
struct Gray {
    double white;

    bool operator==(const Gray&) const = default;
};

/// What tells the dashboard's light and dark apart, beside the colours of its texts and controls.
struct Appearance {
    bool isDark;
    /// Of the button that switches: it names the other one.
    std::string buttonTitle;
    /// None is the colour behind lists and text.
    std::optional<Gray> sidebarBackground;
    /// None is the colour of separators.
    std::optional<Gray> divider;
};

Appearance appearance(bool isDarkMode);

}  // namespace chimewerk
