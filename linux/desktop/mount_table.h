// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Returns the mount points of disks in the text of /proc/self/mountinfo: file systems on a device,
/// mounted for writing. Network file systems are left out, because a dead server would block
/// whoever looks there.
std::vector<std::string> writableDisksIn(std::string_view mountInfo);

/// A mount table of the kernel. Any one thread.
class MountTable {
public:
    /// `file` has the kernel's format.
    explicit MountTable(const std::string& file);

    /// Returns the mount points of disks.
    const std::vector<std::string>& writableDisks() const { return disks_; }

    /// Reads the table again if the kernel says that it has changed. Returns whether the disks
    /// are others now.
    bool refresh();

private:
    void read();

    FileDescriptor file_;
    std::vector<std::string> disks_;
};

}  // namespace chimewerk
