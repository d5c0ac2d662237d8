// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/main_queue.h"

namespace chimewerk {

/// Returns the folder of the device at the root port through which this device is attached: for
/// ".../usb1/1-4/1-4.2/1-4.2.1" that is ".../usb1/1-4". A root hub is its own.
std::string usbRootPort(const std::string& folder);

/// Returns the folder of the controller that this device is attached to; empty if the path does
/// not tell.
std::string usbController(const std::string& folder);

/// Decides which USB devices the user has plugged in. A dock or hub with all that hangs on it is one
/// arrival. A device that merely comes back is none: after a wake, or in another mode of operation.
/// Knows no clock: all times come from the caller's monotonic one.
class UsbArrivals {
public:
    struct Device {
        /// Folder in sysfs, which tells the port.
        std::string folder;
        /// Its physical connector: that of the root port, or of its USB 3 twin.
        std::string connector;
        std::string serial;
        /// Whether it is built in and not unplugged by users.
        bool isFixed;
    };

    /// Notes a device that is there already.
    void setPresent(const std::string& folder, std::string serial) {
        serials_[folder] = std::move(serial);
    }
    /// Notes that a device has gone.
    void remove(const std::string& folder, Seconds now);
    /// Notes that a device has come. Returns whether it is an arrival of its own.
    bool add(const Device& device, Seconds now, bool wokeRecently);

private:
    struct Removal {
        std::string serial;
        Seconds time;
    };

    bool comesBack(const Device& device, Seconds now, bool wokeRecently) const;
    bool belongsToArrival(const std::string& place, Seconds now);

    /// Of the devices that are there, by folder.
    std::map<std::string, std::string> serials_;
    /// The last removal at each port.
    std::map<std::string, Removal> removals_;
    /// When something last came at each connector and controller.
    std::map<std::string, Seconds> comings_;
};

}  // namespace chimewerk
