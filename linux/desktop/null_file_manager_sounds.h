// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/file_manager_sounds.h"

namespace chimewerk {

/// Leaves the file manager's sounds as they are.
class NullFileManagerSounds final : public FileManagerSounds {
public:
    void setFinderTrashSoundEnabled(bool /*enabled*/) override {}
};

}  // namespace chimewerk
