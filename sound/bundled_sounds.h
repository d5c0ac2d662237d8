// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <string>
#include <string_view>

#include "sound/sound_theme.h"

namespace chimewerk {

// The names of the sound files that come with the program. `folder` is the absolute path of the
// folder that holds them; `soundName` is an event's identifier or the name of a key's sound. Any
// file may be missing.

/// The file of `theme`, which is not `system`.
std::string themeSoundFile(std::string_view folder, SoundTheme theme, std::string_view soundName);

/// The files of the default sound, the preferred one first.
std::array<std::string, 2> defaultSoundFiles(std::string_view folder, std::string_view soundName);

}  // namespace chimewerk
