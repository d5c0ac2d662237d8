// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/file_manager_sounds.h"

namespace chimewerk {

/// For desktops whose file manager has no trash sounds to switch off, which are all of them today.
class NullFileManagerSounds final : public FileManagerSounds {
public:
    void setFinderTrashSoundEnabled(bool /*enabled*/) override {}
};

}  // namespace chimewerk
