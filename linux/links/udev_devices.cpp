// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/links/udev_devices.h"

#include "linux/links/udev_handles.h"

namespace chimewerk {

namespace {

using Getter = int(sd_device*, const char**);

std::string textOf(sd_device* device, Getter* get) {
    const char* text = nullptr;
    return device != nullptr && get(device, &text) >= 0 ? text : "";
}

}  // namespace

std::vector<UdevDevice> udevDevices(const char* subsystem) {
    sd_device_enumerator* made = nullptr;
    if (sd_device_enumerator_new(&made) < 0) {
        return {};
    }
    const UdevEnumerateHandle list(made);
    // Where no udev runs, all devices are uninitialized.
    if (sd_device_enumerator_allow_uninitialized(made) < 0 ||
        sd_device_enumerator_add_match_subsystem(made, subsystem, 1) < 0) {
        return {};
    }
    std::vector<UdevDevice> devices;
    for (sd_device* device = sd_device_enumerator_get_device_first(made); device != nullptr;
         device = sd_device_enumerator_get_device_next(made)) {
        // The child owns its parent, so the parent needs no release.
        sd_device* parent = nullptr;
        sd_device_get_parent(device, &parent);
        devices.push_back({.folder = textOf(device, sd_device_get_syspath),
                           .parentFolder = textOf(parent, sd_device_get_syspath),
                           .node = textOf(device, sd_device_get_devname)});
    }
    return devices;
}

}  // namespace chimewerk
