// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/udev_usb_arrival_source.h"

#include <algorithm>
#include <filesystem>
#include <span>
#include <system_error>

#include "linux/base/sysfs.h"
#include "linux/links/udev_devices.h"

namespace chimewerk {

namespace {

/// Devices reappear within this time after a wake.
constexpr Seconds kAfterWake{5};

std::string serialOf(const std::string& folder) {
    return readSysfsLine(folder + "/serial").value_or("");
}

/// Returns a single name for a physical connector, which has one port on a USB 2 bus and one on a
/// USB 3 bus.
std::string connectorOf(const std::string& folder) {
    std::string root = usbRootPort(folder);
    std::error_code none;
    const auto port = std::filesystem::canonical(root + "/port", none);
    if (none) {
        return root;
    }
    const auto twin = std::filesystem::canonical(port / "peer", none);
    return none ? port.string() : std::min(port, twin).string();
}

}  // namespace

bool UdevUsbArrivalSource::open(std::function<void()> arrived) {
    arrivals_ = {};
    monitor_ = UdevMonitor::open(
        queue_, {{.subsystem = "usb", .deviceType = "usb_device"}},
        [this, arrived = std::move(arrived)](std::span<const UdevEvent> events) {
            // Every event must be examined, because it affects the events that follow.
            if (std::ranges::count_if(
                    events, [this](const UdevEvent& event) { return isArrival(event); }) > 0) {
                arrived();
            }
        });
    for (const UdevDevice& device : udevDevices("usb")) {
        arrivals_.setPresent(device.folder, serialOf(device.folder));
    }
    return monitor_ != nullptr;
}

bool UdevUsbArrivalSource::isArrival(const UdevEvent& event) {
    if (event.isRepeated) {
        return false;
    }
    const std::string& folder = event.folder;
    if (event.action == "remove") {
        arrivals_.remove(folder, times_.awake());
    }
    return event.action == "add" &&
           arrivals_.add({.folder = folder,
                          .connector = connectorOf(folder),
                          .serial = serialOf(folder),
                          .isFixed = readSysfsLine(folder + "/removable") == "fixed"},
                         times_.awake(), wakes_.wokeWithin(kAfterWake));
}

SourceReport UdevUsbArrivalSource::report() {
    if (monitor_) {
        return {.mechanism = "udev"};
    }
    return {.mechanism = "no udev",
            .missing = "udev, which announces devices, cannot be reached.",
            .advice = "See that udev runs."};
}

}  // namespace chimewerk
