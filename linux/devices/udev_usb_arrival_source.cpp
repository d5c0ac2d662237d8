// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/udev_usb_arrival_source.h"

#include <algorithm>
#include <span>
#include <utility>

namespace chimewerk {

bool UdevUsbArrivalSource::open(std::function<void()> arrived) {
    monitor_ = UdevMonitor::open(queue_, {{.subsystem = "usb", .deviceType = "usb_device"}},
                                 [arrived = std::move(arrived)](std::span<const UdevEvent> events) {
                                     if (std::ranges::any_of(events, [](const UdevEvent& e) {
                                             return e.action == "add" && !e.isRepeated;
                                         })) {
                                         arrived();
                                     }
                                 });
    return monitor_ != nullptr;
}

}  // namespace chimewerk
