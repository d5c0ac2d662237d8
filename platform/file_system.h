// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// Questions about files. Any thread.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Whether something lies at `path`, a folder included; links are followed. What cannot be
    /// looked at does not exist.
    virtual bool fileExists(const std::string& path) const = 0;
};

}  // namespace chimewerk
