// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <string>
#include <string_view>

#include "sound/sound_theme.h"

namespace chimewerk {

// The paths of the sound files that come with the program. `folder` is the absolute path of
// their folder; `soundName` is an event's identifier or the name of a key's sound. The files may
// be missing.

/// Returns the path of the sound of `theme`, which must not be `system`.
std::string themeSoundFile(std::string_view folder, SoundTheme theme, std::string_view soundName);

/// Returns the paths of the default sound, the preferred one first.
std::array<std::string, 2> defaultSoundFiles(std::string_view folder, std::string_view soundName);

}  // namespace chimewerk
