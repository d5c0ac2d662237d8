// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/usb_arrivals.h"

#include <utility>

namespace chimewerk {

namespace {

/// The devices of a dock appear one after another, at most this far apart.
constexpr Seconds kOneArrival{1};
/// A modem or camera that changes its mode reappears faster than a user can replug it.
constexpr Seconds kModeChange{1};

std::string nameOf(const std::string& folder) {
    return folder.substr(folder.rfind('/') + 1);
}

bool isRootHub(const std::string& name) {
    return name.starts_with("usb");
}

/// Returns the path up to and including its first folder of this name; empty if there is none.
std::string upTo(const std::string& path, const std::string& name) {
    for (std::size_t at = path.find("/" + name); at != std::string::npos;
         at = path.find("/" + name, at + 1)) {
        const std::size_t end = at + 1 + name.size();
        if (end == path.size() || path[end] == '/') {
            return path.substr(0, end);
        }
    }
    return {};
}

}  // namespace

std::string usbRootPort(const std::string& folder) {
    const std::string name = nameOf(folder);
    const std::string root = upTo(folder, name.substr(0, name.find('.')));
    return root.empty() ? folder : root;
}

std::string usbController(const std::string& folder) {
    const std::string name = nameOf(folder);
    const std::string hub =
        upTo(folder, isRootHub(name) ? name : "usb" + name.substr(0, name.find('-')));
    return hub.substr(0, hub.empty() ? 0 : hub.rfind('/'));
}

void UsbArrivals::remove(const std::string& folder, Seconds now) {
    if (const auto there = serials_.extract(folder)) {
        removals_[folder] = {.serial = there.mapped(), .time = now};
    }
}

bool UsbArrivals::add(const Device& device, Seconds now, bool wokeRecently) {
    const bool isBack = comesBack(device, now, wokeRecently);
    setPresent(device.folder, device.serial);
    if (device.isFixed || isBack) {
        return false;
    }
    const std::string controller = usbController(device.folder);
    if (comings_.contains(controller) && belongsToArrival(controller, now)) {
        return false;
    }
    return !belongsToArrival(isRootHub(nameOf(device.folder)) ? controller : device.connector, now);
}

bool UsbArrivals::comesBack(const Device& device, Seconds now, bool wokeRecently) const {
    const auto removal = removals_.find(device.folder);
    if (removal == removals_.end() || removal->second.serial != device.serial) {
        return false;
    }
    return wokeRecently || (!device.serial.empty() && now - removal->second.time < kModeChange);
}

/// Returns whether a device appeared at this place just before `now`. Records `now` as the
/// latest appearance.
bool UsbArrivals::belongsToArrival(const std::string& place, Seconds now) {
    const auto [last, isFirst] = comings_.try_emplace(place, now);
    return !isFirst && now - std::exchange(last->second, now) < kOneArrival;
}

}  // namespace chimewerk
