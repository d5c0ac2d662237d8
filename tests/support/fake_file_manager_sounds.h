#pragma once

#include <vector>

#include "platform/file_manager_sounds.h"
#include "support/journal.h"

namespace chimewerk {

/// Records what the file manager was told.
class FakeFileManagerSounds final : public FileManagerSounds, public Noting {
public:
    std::vector<bool> calls;

    void setFinderTrashSoundEnabled(bool enabled) override {
        note(enabled ? "finder+" : "finder-");
        calls.push_back(enabled);
    }
};

}  // namespace chimewerk
