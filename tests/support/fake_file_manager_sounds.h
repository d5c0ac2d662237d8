#pragma once

#include <vector>

#include "platform/file_manager_sounds.h"

namespace chimewerk {

/// Records what the file manager was told.
class FakeFileManagerSounds final : public FileManagerSounds {
public:
    std::vector<bool> calls;

    void setFinderTrashSoundEnabled(bool enabled) override { calls.push_back(enabled); }
};

}  // namespace chimewerk
