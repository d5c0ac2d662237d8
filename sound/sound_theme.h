// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace chimewerk {

/// The built-in themes. `system` stands for no theme: events play their own file or their
/// alert sound.
enum class SoundTheme { system, bit8, soft, scifi, classic, trad, piano };

/// Every theme, in the order of the theme menu.
inline constexpr std::array<SoundTheme, 7> kAllThemes = {
    SoundTheme::system,  SoundTheme::bit8, SoundTheme::soft, SoundTheme::scifi,
    SoundTheme::classic, SoundTheme::trad, SoundTheme::piano};

/// Returns the theme's name in settings and file names, such as "8bit".
std::string_view rawValue(SoundTheme theme);

/// Returns the theme with exactly this raw value (case-sensitive), or none.
std::optional<SoundTheme> themeFromRawValue(std::string_view raw);

/// Returns the theme's name as the user sees it, such as "🎮 8-bit".
std::string_view displayName(SoundTheme theme);

}  // namespace chimewerk
