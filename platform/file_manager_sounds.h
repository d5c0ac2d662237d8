// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace chimewerk {

/// The sounds that the desktop's file manager makes by itself.
class FileManagerSounds {
public:
    virtual ~FileManagerSounds() = default;

    /// Switches the file manager's own trash sounds on (true), or off while the program plays its
    /// own (false). Main thread; failures are silent.
    virtual void setFinderTrashSoundEnabled(bool enabled) = 0;
};

}  // namespace chimewerk
