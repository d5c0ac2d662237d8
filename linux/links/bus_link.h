#pragma once

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <functional>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "platform/lifeline.h"

namespace chimewerk {

struct UnrefBus {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
struct UnrefBusMessage {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
struct UnrefBusSlot {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
struct UnrefEventLoop {
    void operator()(sd_event* loop) const { sd_event_unref(loop); }
};
using BusMessage = std::unique_ptr<sd_bus_message, UnrefBusMessage>;
/// A call that waits for its answer, or a match: ends with the object.
using BusSlot = std::unique_ptr<sd_bus_slot, UnrefBusSlot>;

/// Calls `handler` with each NameOwnerChanged of the bus that is about `name`: name, old owner, new owner, of
/// which empty is none. Ends with the bus.
void matchOwnerChanges(sd_bus* bus, const std::string& name, sd_bus_message_handler_t handler,
                       void* user);

/// A connection to a message bus that outlives the bus: when the bus goes away the link looks for it every 3
/// s and opens anew. Calls and matches on it are sd-bus's own; they must not wait for answers. Main thread
/// only; must not be destroyed from within a callback.
class BusLink {
public:
    /// Opens the wanted bus as sd_bus_open_user and sd_bus_open_system do: without waiting, and negative when
    /// it cannot.
    using Opener = std::function<int(sd_bus** bus)>;

    struct Callbacks {
        /// The bus is there, or will be in a moment: matches and calls are queued until it is.
        std::function<void(sd_bus* bus)> onOpen;
        /// The bus has gone away. May be empty.
        std::function<void()> onLost = {};
    };

    /// The queue outlives the link.
    BusLink(EpollMainQueue& queue, Opener opener, Callbacks callbacks);
    ~BusLink();
    BusLink(const BusLink&) = delete;
    BusLink& operator=(const BusLink&) = delete;

    /// Opens now, or else as soon as the bus is there.
    void keepOpen();

private:
    int tryToOpen();
    void disconnect();
    void dispatch();
    void retryLater();

    EpollMainQueue& queue_;
    const Opener opener_;
    const Callbacks callbacks_;
    /// Knows of the bus's timeouts and full buffers, and makes one descriptor of it all.
    std::unique_ptr<sd_event, UnrefEventLoop> loop_;
    std::unique_ptr<sd_bus, UnrefBus> bus_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;  // ends before the loop that it watches
    bool retrying_ = false;
    Lifeline lifeline_;
};

}  // namespace chimewerk
