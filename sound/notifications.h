// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

namespace chimewerk {

/// The angle sensor's reading, on every sample. No object; user info "angle": float, degrees.
inline constexpr std::string_view lidAngleDidChange = "Chimewerk.lidAngle";

/// An enabled event's trigger count was increased. Object: the event identifier, a std::string.
inline constexpr std::string_view eventCounterUpdated = "Chimewerk.counter";

/// Another theme was selected, or one was deleted. Object: the selected `SoundTheme`; none for a
/// custom theme.
inline constexpr std::string_view themeDidChange = "Chimewerk.theme";

}  // namespace chimewerk
