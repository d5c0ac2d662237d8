// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/links/udev_devices.h"

#include "linux/links/udev_handles.h"

namespace chimewerk {

namespace {

std::string orEmpty(const char* text) {
    return text == nullptr ? std::string() : text;
}

}  // namespace

std::vector<UdevDevice> udevDevices(const char* subsystem) {
    const UdevHandle udev(udev_new());
    const UdevEnumerateHandle list(udev ? udev_enumerate_new(udev.get()) : nullptr);
    if (!list || udev_enumerate_add_match_subsystem(list.get(), subsystem) < 0 ||
        udev_enumerate_scan_devices(list.get()) < 0) {
        return {};
    }
    std::vector<UdevDevice> devices;
    for (udev_list_entry* entry = udev_enumerate_get_list_entry(list.get()); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        const UdevDeviceHandle device(
            udev_device_new_from_syspath(udev.get(), udev_list_entry_get_name(entry)));
        if (device) {
            // The child owns its parent, so the parent needs no release.
            udev_device* const parent = udev_device_get_parent(device.get());
            devices.push_back(
                {.folder = orEmpty(udev_device_get_syspath(device.get())),
                 .parentFolder = parent == nullptr ? "" : orEmpty(udev_device_get_syspath(parent)),
                 .node = orEmpty(udev_device_get_devnode(device.get()))});
        }
    }
    return devices;
}

}  // namespace chimewerk
