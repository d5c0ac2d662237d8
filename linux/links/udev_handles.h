// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <libudev.h>

#include <memory>

namespace chimewerk {

/// Releases a reference to a libudev object.
struct UdevRelease {
    void operator()(udev* handle) const { udev_unref(handle); }
    void operator()(udev_device* handle) const { udev_device_unref(handle); }
    void operator()(udev_enumerate* handle) const { udev_enumerate_unref(handle); }
    void operator()(udev_monitor* handle) const { udev_monitor_unref(handle); }
};

using UdevHandle = std::unique_ptr<udev, UdevRelease>;
using UdevDeviceHandle = std::unique_ptr<udev_device, UdevRelease>;
using UdevEnumerateHandle = std::unique_ptr<udev_enumerate, UdevRelease>;
using UdevMonitorHandle = std::unique_ptr<udev_monitor, UdevRelease>;

}  // namespace chimewerk
