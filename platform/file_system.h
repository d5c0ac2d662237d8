// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace chimewerk {

/// Reads facts about files. Any thread.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Returns whether a file or folder exists at `path`; links are followed. False if it cannot
    /// be examined.
    virtual bool fileExists(const std::string& path) const = 0;
};

}  // namespace chimewerk
