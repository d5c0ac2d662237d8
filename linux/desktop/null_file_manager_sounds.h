#pragma once

#include "platform/file_manager_sounds.h"

namespace chimewerk {

/// For desktops whose file manager makes no trash sounds of its own, which today are all of them.
class NullFileManagerSounds final : public FileManagerSounds {
public:
    void setFinderTrashSoundEnabled(bool /*enabled*/) override {}
};

}  // namespace chimewerk
