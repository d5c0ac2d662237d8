// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sound/bundled_sounds.h"

namespace chimewerk {

std::string themeSoundFile(std::string_view folder, SoundTheme theme, std::string_view soundName) {
    std::string path(folder);
    path.append("/t_").append(rawValue(theme)).append("_").append(soundName).append(".wav");
    return path;
}

std::array<std::string, 2> defaultSoundFiles(std::string_view folder, std::string_view soundName) {
    std::string path(folder);
    path.append("/").append(soundName);
    return {path + ".wav", path + ".mp3"};
}

}  // namespace chimewerk
