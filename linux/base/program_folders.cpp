// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/program_folders.h"

#include <algorithm>

#include "linux/base/file_reading.h"

namespace chimewerk {

ProgramFolders findProgramFolders() {
    std::string prefix = readLink("/proc/self/exe");
    if (prefix.empty()) {
        return {};
    }
    for (int level = 0; level < 2; ++level) {
        prefix.resize(std::min(prefix.rfind('/'), prefix.size()));
    }
    return {.sounds = prefix + "/share/chimewerk/sounds",
            .modules = prefix + "/lib/chimewerk",
            .pages = prefix + "/share/chimewerk"};
}

}  // namespace chimewerk
