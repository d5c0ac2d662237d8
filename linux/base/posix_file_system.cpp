// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/posix_file_system.h"

#include <unistd.h>

namespace chimewerk {

bool PosixFileSystem::fileExists(const std::string& path) const {
    return access(path.c_str(), F_OK) == 0;
}

}  // namespace chimewerk
