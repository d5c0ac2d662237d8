// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/file_system.h"

namespace chimewerk {

/// The file system of this machine.
class PosixFileSystem final : public FileSystem {
public:
    bool fileExists(const std::string& path) const override;
};

}  // namespace chimewerk
