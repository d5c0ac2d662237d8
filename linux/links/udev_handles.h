// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-device.h>
#include <systemd/sd-event.h>

#include <memory>

namespace chimewerk {

/// Releases a reference to an object of sd-device, the udev client of libsystemd. (libudev is the
/// same code once more, and would take 180 KiB of memory beside libsystemd.)
struct UdevRelease {
    void operator()(sd_event* handle) const { sd_event_unref(handle); }
    void operator()(sd_device_enumerator* handle) const { sd_device_enumerator_unref(handle); }
    void operator()(sd_device_monitor* handle) const { sd_device_monitor_unref(handle); }
};

using UdevLoopHandle = std::unique_ptr<sd_event, UdevRelease>;
using UdevEnumerateHandle = std::unique_ptr<sd_device_enumerator, UdevRelease>;
using UdevMonitorHandle = std::unique_ptr<sd_device_monitor, UdevRelease>;

}  // namespace chimewerk
