// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/bus/bus_link.h"

#include <cerrno>
#include <utility>

namespace chimewerk {

void matchOwnerChanges(sd_bus* bus, const std::string& name, sd_bus_message_handler_t handler,
                       void* user) {
    const std::string rule =
        "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
        "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" +
        name + "'";
    sd_bus_add_match_async(bus, nullptr, rule.c_str(), handler, nullptr, user);
}

const char* readNewOwner(sd_bus_message* signal) {
    const char* owner = nullptr;
    return sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner) >= 0 ? owner : nullptr;
}

BusLink::BusLink(EpollMainQueue& queue, Opener opener, Callbacks callbacks, Seconds interval)
    : queue_(queue),
      opener_(std::move(opener)),
      callbacks_(std::move(callbacks)),
      retry_(queue, interval, [this] { keepOpen(); }) {}

BusLink::~BusLink() {
    disconnect();
}

void BusLink::keepOpen() {
    if (bus_) {
        return;
    }
    const int status = tryToOpen();
    // A session without an address for its bus will not get one while this process lives.
    if (status < 0 && status != -ENOMEDIUM) {
        retry_.schedule();
    }
}

int BusLink::tryToOpen() {
    sd_bus* bus = nullptr;
    if (const int status = opener_(&bus); status < 0) {
        return status;
    }
    bus_.reset(bus);
    sd_event* loop = nullptr;
    if (sd_event_new(&loop) < 0) {
        disconnect();
        return -ENOMEM;
    }
    loop_.reset(loop);
    if (sd_bus_attach_event(bus, loop, SD_EVENT_PRIORITY_NORMAL) >= 0) {
        watch_ = queue_.watch(sd_event_get_fd(loop), [this] { dispatch(); });
    }
    if (!watch_) {
        disconnect();
        return -ENOMEM;
    }
    callbacks_.onOpen(bus);
    queue_.post(lifeline_.guard([this] { dispatch(); }));  // Sends what was queued.
    return 0;
}

void BusLink::disconnect() {
    watch_ = nullptr;
    if (bus_) {
        sd_bus_detach_event(bus_.get());
    }
    bus_ = nullptr;
    loop_ = nullptr;
}

void BusLink::dispatch() {
    if (!bus_) {
        return;
    }
    if (sd_event_get_state(loop_.get()) == SD_EVENT_ARMED && sd_event_wait(loop_.get(), 0) > 0) {
        sd_event_dispatch(loop_.get());
    }
    // Prepares the loop again, so that its descriptor becomes readable when more arrives.
    while (sd_bus_is_open(bus_.get()) > 0 && sd_event_prepare(loop_.get()) > 0) {
        sd_event_dispatch(loop_.get());
    }
    if (sd_bus_is_open(bus_.get()) <= 0) {
        disconnect();
        if (callbacks_.onLost) {
            callbacks_.onLost();
        }
        retry_.schedule();
    }
}

}  // namespace chimewerk
