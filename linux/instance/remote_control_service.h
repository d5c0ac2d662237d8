// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/bus/bus_link.h"
#include "platform/lifeline.h"
#include "platform/remote_control.h"

namespace chimewerk {

/// The D-Bus interface through which other programs control this one.
inline constexpr const char* kRemoteControlInterface = "org.chimewerk.Chimewerk1";

/// Serves that interface. Main thread only.
class RemoteControlService {
public:
    /// The queue must outlive the object.
    explicit RemoteControlService(EpollMainQueue& queue) : queue_(queue) {}

    /// Serves the interface at this object of the bus. Call it again for each new connection.
    void addTo(sd_bus* bus, const std::string& path);

    /// Sets what carries the calls out. Call it before the queue runs. Calls are carried out in jobs
    /// of the queue, so those that have arrived by now wait for the jobs posted by now.
    void begin(RemoteControl& control) { control_ = &control; }

    // Tell the bus that a property has changed.
    void announceTheme() { announce("Theme"); }
    void announceMute() { announce("Muted"); }

private:
    struct Unref {
        void operator()(sd_bus* bus) const { sd_bus_unref(bus); }
    };

    void announce(const char* property);

    template <void (RemoteControlService::*answer)(sd_bus_message*)>
    int later(sd_bus_message* call, sd_bus_error* error);
    void play(sd_bus_message* call);
    void setEnabled(sd_bus_message* call);
    void setTheme(sd_bus_message* call);
    void setMuted(sd_bus_message* call);
    void toggleMuted(sd_bus_message* call);
    void listEvents(sd_bus_message* call);
    void check(sd_bus_message* call);
    static int readProperty(sd_bus* bus, const char* path, const char* interface,
                            const char* property, sd_bus_message* reply, void* user,
                            sd_bus_error* error);
    static const sd_bus_vtable kInterface[];

    EpollMainQueue& queue_;
    RemoteControl* control_ = nullptr;
    /// The last connection, which may be closed.
    std::unique_ptr<sd_bus, Unref> bus_;
    std::string path_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
