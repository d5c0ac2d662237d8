// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

namespace chimewerk {

/// A device that is present now.
struct UdevDevice {
    /// Folder in sysfs.
    std::string folder;
    /// Folder of the parent device; empty if there is none.
    std::string parentFolder;
    /// File below /dev; empty if there is none.
    std::string node;
};

/// Returns the devices of a subsystem, sorted by folder; empty if they cannot be listed.
std::vector<UdevDevice> udevDevices(const char* subsystem);

}  // namespace chimewerk
