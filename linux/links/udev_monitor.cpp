// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/links/udev_monitor.h"

#include <cerrno>
#include <utility>
#include <vector>

namespace chimewerk {

namespace {

/// Room for the events of a hub full of devices. The kernel may grant ordinary users less.
constexpr int kReceiveBytes = 1024 * 1024;
/// Further events wait for the next turn of the main loop.
constexpr int kMaxEventsPerTurn = 256;

}  // namespace

std::unique_ptr<UdevMonitor> UdevMonitor::open(EpollMainQueue& queue,
                                               std::initializer_list<Filter> filters,
                                               Handler handler) {
    UdevHandle udev(udev_new());
    UdevMonitorHandle monitor(udev ? udev_monitor_new_from_netlink(udev.get(), "udev") : nullptr);
    if (!monitor) {
        return nullptr;
    }
    for (const Filter& filter : filters) {
        if (udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), filter.subsystem,
                                                            filter.deviceType) < 0) {
            return nullptr;
        }
    }
    udev_monitor_set_receive_buffer_size(monitor.get(), kReceiveBytes);
    if (udev_monitor_enable_receiving(monitor.get()) < 0) {
        return nullptr;
    }
    std::unique_ptr<UdevMonitor> made(
        new UdevMonitor(std::move(udev), std::move(monitor), std::move(handler)));
    made->watch_ = queue.watch(udev_monitor_get_fd(made->monitor_.get()),
                               [opened = made.get()] { opened->receive(); });
    return made->watch_ ? std::move(made) : nullptr;
}

UdevMonitor::UdevMonitor(UdevHandle udev, UdevMonitorHandle monitor, Handler handler)
    : udev_(std::move(udev)), monitor_(std::move(monitor)), handler_(std::move(handler)) {}

void UdevMonitor::receive() {
    std::vector<UdevEvent> events;
    bool lost = false;
    for (int i = 0; i < kMaxEventsPerTurn; ++i) {
        errno = 0;
        const UdevDeviceHandle device(udev_monitor_receive_device(monitor_.get()));
        if (device) {
            const char* const action = udev_device_get_action(device.get());
            const char* const folder = udev_device_get_syspath(device.get());
            events.push_back({.action = action == nullptr ? "" : action,
                              .isRepeated = udev_device_get_property_value(device.get(),
                                                                           "SYNTH_UUID") != nullptr,
                              .folder = folder == nullptr ? "" : folder});
        } else if (errno == ENOBUFS) {
            lost = true;  // Events were lost: reported once; the events that were kept follow.
        } else {
            break;
        }
    }
    if (!events.empty() || lost) {
        const Handler handler = handler_;  // The handler may destroy this monitor.
        handler(events);
    }
}

}  // namespace chimewerk
