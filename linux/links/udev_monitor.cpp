// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/links/udev_monitor.h"

#include <sys/socket.h>

#include <linux/sock_diag.h>

#include <array>
#include <utility>

namespace chimewerk {

namespace {

/// Room for the events of a hub full of devices. The kernel may grant ordinary users less.
constexpr std::size_t kReceiveBytes = std::size_t{1024} * 1024;
/// Further events wait for the next turn of the main loop.
constexpr int kMaxEventsPerTurn = 256;

std::string propertyOf(sd_device* device, const char* name) {
    const char* value = nullptr;
    return sd_device_get_property_value(device, name, &value) >= 0 ? value : "";
}

UdevEvent eventOf(sd_device* device) {
    const char* folder = nullptr;
    sd_device_get_syspath(device, &folder);
    return {.action = propertyOf(device, "ACTION"),
            .isRepeated = !propertyOf(device, "SYNTH_UUID").empty(),
            .folder = folder == nullptr ? "" : folder};
}

}  // namespace

std::unique_ptr<UdevMonitor> UdevMonitor::open(EpollMainQueue& queue,
                                               std::initializer_list<Filter> filters,
                                               Handler handler) {
    std::unique_ptr<UdevMonitor> made(new UdevMonitor(std::move(handler)));
    return made->start(queue, filters) ? std::move(made) : nullptr;
}

UdevMonitor::UdevMonitor(Handler handler) : handler_(std::move(handler)) {}

bool UdevMonitor::start(EpollMainQueue& queue, std::initializer_list<Filter> filters) {
    sd_event* loop = nullptr;
    sd_device_monitor* monitor = nullptr;
    if (sd_event_new(&loop) < 0) {
        return false;
    }
    loop_.reset(loop);
    if (sd_device_monitor_new(&monitor) < 0) {
        return false;
    }
    monitor_.reset(monitor);
    for (const Filter& filter : filters) {
        if (sd_device_monitor_filter_add_match_subsystem_devtype(monitor, filter.subsystem,
                                                                 filter.deviceType) < 0) {
            return false;
        }
    }
    sd_device_monitor_set_receive_buffer_size(monitor, kReceiveBytes);
    const auto onDevice = [](sd_device_monitor* /*monitor*/, sd_device* device, void* user) {
        static_cast<UdevMonitor*>(user)->events_.push_back(eventOf(device));
        return 0;
    };
    if (sd_device_monitor_attach_event(monitor, loop) < 0 ||
        sd_device_monitor_start(monitor, onDevice, this) < 0) {
        return false;
    }
    socket_ = sd_event_source_get_io_fd(sd_device_monitor_get_event_source(monitor));
    lost_ = lostSoFar();
    watch_ = queue.watch(sd_event_get_fd(loop), [this] { receive(); });
    return watch_ != nullptr;
}

/// Returns how many events have found no room in the socket. sd-device does not tell.
std::uint32_t UdevMonitor::lostSoFar() const {
    std::array<std::uint32_t, SK_MEMINFO_VARS> facts{};
    socklen_t size = sizeof facts;
    getsockopt(socket_, SOL_SOCKET, SO_MEMINFO, facts.data(), &size);
    return facts[SK_MEMINFO_DROPS];
}

void UdevMonitor::receive() {
    for (int i = 0; i < kMaxEventsPerTurn && sd_event_run(loop_.get(), 0) > 0; ++i) {
    }
    const auto events = std::exchange(events_, {});
    const auto lostBefore = std::exchange(lost_, lostSoFar());
    if (!events.empty() || lost_ != lostBefore) {
        const Handler handler = handler_;  // The handler may destroy this monitor.
        handler(events);
    }
}

}  // namespace chimewerk
