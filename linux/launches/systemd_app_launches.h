#pragma once

#include <functional>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/launches/app_unit_launches.h"
#include "linux/links/bus_link.h"

namespace chimewerk {

/// Hears from the systemd manager of the user, over the session bus, when the unit of an application has been
/// started. The bus and the manager may come late, go and come back. Main thread only; must not be destroyed
/// from within its callback.
class SystemdAppLaunches {
public:
    /// `onLaunch` runs on the main thread, once per started unit. The queue outlives the object.
    SystemdAppLaunches(EpollMainQueue& queue, std::function<void()> onLaunch);

    /// Whether the manager is there and tells.
    bool hears() const { return hears_; }

private:
    struct Question;

    void open(sd_bus* bus);
    void subscribe(sd_bus* bus);
    void askSince(sd_bus* bus, const char* unitName);

    static int onSubscribed(sd_bus_message* reply, void* self, sd_bus_error* error);
    static int onOwnerChanged(sd_bus_message* signal, void* self, sd_bus_error* error);
    static int onJobRemoved(sd_bus_message* signal, void* self, sd_bus_error* error);
    static int onUnitRemoved(sd_bus_message* signal, void* self, sd_bus_error* error);
    static int onActiveSince(sd_bus_message* reply, void* question, sd_bus_error* error);

    const std::function<void()> onLaunch_;
    AppUnitLaunches launches_;
    bool hears_ = false;
    BusLink link_;
};

}  // namespace chimewerk
