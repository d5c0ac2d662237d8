// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/udev_handles.h"

namespace chimewerk {

/// An event of a device.
struct UdevEvent {
    /// "add", "remove", "change" and so on.
    std::string action;
    /// Whether a program asked udev to repeat the event; then nothing has happened.
    bool isRepeated;
    /// The device's folder in sysfs.
    std::string folder;
};

/// Reports devices that appear and disappear, after udev has applied its rules. Main thread only.
class UdevMonitor {
public:
    struct Filter {
        const char* subsystem;
        /// Null matches every type.
        const char* deviceType;
    };
    /// Receives the events since the last call, on the main thread. The list is empty if events
    /// were lost because too many came at once.
    using Handler = std::function<void(std::span<const UdevEvent>)>;

    /// Reports events of devices that match any of `filters`. Returns null if udev cannot
    /// be reached.
    static std::unique_ptr<UdevMonitor> open(EpollMainQueue& queue,
                                             std::initializer_list<Filter> filters,
                                             Handler handler);

private:
    explicit UdevMonitor(Handler handler);

    bool start(EpollMainQueue& queue, std::initializer_list<Filter> filters);
    std::uint32_t lostSoFar() const;
    void receive();

    const Handler handler_;
    std::vector<UdevEvent> events_;
    UdevLoopHandle loop_;
    UdevMonitorHandle monitor_;
    /// The monitor's.
    int socket_ = -1;
    std::uint32_t lost_ = 0;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
