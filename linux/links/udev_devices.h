#pragma once

#include <string>
#include <vector>

namespace chimewerk {

/// One device that is there now.
struct UdevDevice {
    /// Its folder in sysfs.
    std::string folder;
    /// The folder of the device that it belongs to; empty when it belongs to none.
    std::string parentFolder;
    /// Its file below /dev; empty when it has none.
    std::string node;
};

/// The devices of a subsystem, by the names of their folders. Empty when they cannot be listed.
std::vector<UdevDevice> udevDevices(const char* subsystem);

}  // namespace chimewerk
