// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/retry_interval.h"
#include "platform/delayed_call.h"
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
/// A pending call or a match, which ends with this object.
using BusSlot = std::unique_ptr<sd_bus_slot, UnrefBusSlot>;

/// The class of a member function of one of these forms.
template <typename Method>
struct HandlerOf;
template <typename Owner>
struct HandlerOf<void (Owner::*)(sd_bus_message*)> {
    using Object = Owner;
};
template <typename Owner>
struct HandlerOf<int (Owner::*)(sd_bus_message*, sd_bus_error*)> {
    using Object = Owner;
};

/// Calls this member function of the object that is the sd-bus user data. Use
/// `callMember<&Source::onSignal>` as the handler and `this` as the user data. If the member
/// returns void, other handlers get the message too; otherwise it returns what sd-bus expects.
template <auto method>
int callMember(sd_bus_message* message, void* user, [[maybe_unused]] sd_bus_error* error) {
    auto& object = *static_cast<typename HandlerOf<decltype(method)>::Object*>(user);
    if constexpr (std::is_invocable_v<decltype(method), decltype(object), sd_bus_message*>) {
        (object.*method)(message);
        return 0;
    } else {
        return (object.*method)(message, error);
    }
}

/// Calls `handler` with each change of the owner of `name` on the bus, until the bus is closed.
void matchOwnerChanges(sd_bus* bus, const std::string& name, sd_bus_message_handler_t handler,
                       void* user);
/// Returns the new owner in such a message, empty if there is none; null if it cannot be read.
const char* readNewOwner(sd_bus_message* signal);

/// A connection to a message bus that is opened again after the bus has restarted: while the bus is
/// away, the link retries at intervals. Make calls and matches with sd-bus directly; they must not
/// block. Main thread only; must not be destroyed from within a callback.
class BusLink {
public:
    /// Opens the bus without blocking, as sd_bus_open_user and sd_bus_open_system do. Returns a
    /// negative number on failure.
    using Opener = std::function<int(sd_bus** bus)>;

    struct Callbacks {
        /// The bus is open, or will be in a moment; matches and calls are queued until then.
        std::function<void(sd_bus* bus)> onOpen;
        /// The bus has gone away. May be empty.
        std::function<void()> onLost = {};
    };

    /// The queue must outlive the link. `interval` is the time between two attempts.
    BusLink(EpollMainQueue& queue, Opener opener, Callbacks callbacks,
            Seconds interval = kRetryInterval);
    ~BusLink();
    BusLink(const BusLink&) = delete;
    BusLink& operator=(const BusLink&) = delete;

    /// Opens the bus now or as soon as it is available, and again after each loss.
    void keepOpen();

private:
    int tryToOpen();
    void disconnect();
    void dispatch();

    EpollMainQueue& queue_;
    const Opener opener_;
    const Callbacks callbacks_;
    /// Handles the bus's timeouts and full buffers behind one descriptor.
    std::unique_ptr<sd_event, UnrefEventLoop> loop_;
    std::unique_ptr<sd_bus, UnrefBus> bus_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;  // Destroyed before the loop that it watches
    DelayedCall retry_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
