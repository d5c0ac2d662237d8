// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

namespace chimewerk {

/// Posted for each sample of the angle sensor. No object; user info "angle": float, degrees.
inline constexpr std::string_view lidAngleDidChange = "Chimewerk.lidAngle";

/// Posted when an event has been counted. Object: the event identifier, a std::string.
inline constexpr std::string_view eventCounterUpdated = "Chimewerk.counter";

/// Posted when a theme was selected or deleted. Object: the selected `SoundTheme`; none for a
/// custom theme.
inline constexpr std::string_view themeDidChange = "Chimewerk.theme";

/// Posted when another program has changed a setting of an event. No object.
inline constexpr std::string_view kSettingsDidChange = "Chimewerk.settings";

/// Posted when the program was muted or unmuted. No object.
inline constexpr std::string_view kMuteDidChange = "Chimewerk.mute";

}  // namespace chimewerk
