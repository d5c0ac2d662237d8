// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sound/sound_theme.h"

#include <algorithm>

namespace chimewerk {

namespace {

struct Names {
    std::string_view raw;
    std::string_view display;
};

const Names& namesOf(SoundTheme theme) {
    static constexpr std::array<Names, kAllThemes.size()> kNames = {{
        {"system", "System"},
        {"8bit", "🎮 8-bit"},
        {"soft", "🎵 Soft"},
        {"scifi", "🚀 Sci-Fi"},
        {"classic", "🍎 Classic"},
        {"trad", "🪵 Traditional"},
        {"piano", "🎹 Piano"},
    }};
    return kNames.at(static_cast<std::size_t>(theme));
}

}  // namespace

std::string_view rawValue(SoundTheme theme) {
    return namesOf(theme).raw;
}

std::optional<SoundTheme> themeFromRawValue(std::string_view raw) {
    const auto* const found = std::ranges::find(kAllThemes, raw, rawValue);
    return found == kAllThemes.end() ? std::nullopt : std::optional(*found);
}

std::string_view displayName(SoundTheme theme) {
    return namesOf(theme).display;
}

}  // namespace chimewerk
