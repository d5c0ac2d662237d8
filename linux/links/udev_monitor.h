#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/udev_handles.h"

namespace chimewerk {

/// What happened to a device.
struct UdevEvent {
    /// "add", "remove", "change" and so on.
    std::string action;
    /// Somebody asked for the event to be repeated; nothing has happened.
    bool isRepeated;
};

/// Hears devices come and go, after udev's rules have been applied. Main thread only.
class UdevMonitor {
public:
    struct Filter {
        const char* subsystem;
        /// Null for every type.
        const char* deviceType;
    };
    /// Receives what has gathered since the last call, on the main thread; empty when events were lost
    /// because too many came at once.
    using Handler = std::function<void(std::span<const UdevEvent>)>;

    /// Hears the events of devices that any of `filters` fits. Null when they cannot be heard.
    static std::unique_ptr<UdevMonitor> open(EpollMainQueue& queue,
                                             std::initializer_list<Filter> filters,
                                             Handler handler);

private:
    UdevMonitor(UdevHandle udev, UdevMonitorHandle monitor, Handler handler);

    void receive();

    UdevHandle udev_;
    UdevMonitorHandle monitor_;
    Handler handler_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
