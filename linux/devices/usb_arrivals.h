// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/main_queue.h"

namespace chimewerk {

/// Returns the folder of the device at the root port through which this device is attached: for
/// ".../usb1/1-4/1-4.2/1-4.2.1" that is ".../usb1/1-4". For a root hub it is the hub's own folder.
std::string usbRootPort(const std::string& folder);

/// Returns the folder of the controller that this device is attached to; empty if the path does not
/// show it.
std::string usbController(const std::string& folder);

/// Decides which USB devices the user has plugged in. A dock or hub with everything attached to it
/// is one arrival. A device that only reappears, after a wake or in another mode, is none. Reads no
/// clock: all times are passed in and come from a monotonic clock.
class UsbArrivals {
public:
    struct Device {
        /// Folder in sysfs, which identifies the port.
        std::string folder;
        /// Physical connector: that of the root port, or of its USB 3 twin.
        std::string connector;
        std::string serial;
        /// Whether the device is built in, so that users cannot unplug it.
        bool isFixed;
    };

    /// Records a device that is already present.
    void setPresent(const std::string& folder, std::string serial) {
        serials_[folder] = std::move(serial);
    }
    /// Records the removal of a device.
    void remove(const std::string& folder, Seconds now);
    /// Records the appearance of a device. Returns whether it is a separate arrival.
    bool add(const Device& device, Seconds now, bool wokeRecently);

private:
    struct Removal {
        std::string serial;
        Seconds time;
    };

    bool comesBack(const Device& device, Seconds now, bool wokeRecently) const;
    bool belongsToArrival(const std::string& place, Seconds now);

    /// The serial numbers of the present devices, by folder.
    std::map<std::string, std::string> serials_;
    /// The last removal at each port.
    std::map<std::string, Removal> removals_;
    /// The time of the last appearance at each connector and controller.
    std::map<std::string, Seconds> comings_;
};

}  // namespace chimewerk
