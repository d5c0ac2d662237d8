// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/program_folders.h"

#include <filesystem>
#include <system_error>

namespace chimewerk {

ProgramFolders findProgramFolders() {
    std::error_code failed;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", failed);
    if (failed) {
        return {};
    }
    const auto prefix = program.parent_path().parent_path();
    return {.sounds = prefix / "share" / "chimewerk" / "sounds",
            .modules = prefix / "lib" / "chimewerk",
            .pages = prefix / "share" / "chimewerk"};
}

}  // namespace chimewerk
