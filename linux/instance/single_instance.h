// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "linux/base/epoll_main_queue.h"
#include "linux/bus/bus_link.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// A request from a new launch to the instance that is already running.
struct LaunchRequest {
    /// One of the actions of SingleInstance; empty to show the dashboard.
    std::string action = {};
    /// $XDG_ACTIVATION_TOKEN, which lets a new window come to the front; empty if not set.
    std::string activationToken = {};
    /// $DESKTOP_STARTUP_ID, the older form of the token; empty if not set.
    std::string startupId = {};

    /// Makes a request with the tokens from the environment of this process.
    static LaunchRequest ofThisProcess(std::string action = {});
};

/// Keeps the program to one instance per session. The owner of the well-known name on the session
/// bus is that instance, and serves `org.freedesktop.Application` to later launches. When the bus
/// goes away and comes back, the name is requested again; if another instance owns it by then, this
/// one continues without it. The destructor releases the name, so destroy this object last. Main
/// thread only; must not be destroyed from within a callback.
class SingleInstance {
public:
    static constexpr const char* kOpenDashboard = "open-dashboard";
    static constexpr const char* kOpenHelp = "open-help";
    static constexpr const char* kAllowMicrophone = "allow-microphone";
    static constexpr const char* kDenyMicrophone = "deny-microphone";
    static constexpr const char* kQuit = "quit";
    /// Does nothing.
    static constexpr const char* kKeepQuiet = "keep-quiet";

    enum class Outcome {
        /// This process is the instance of the session.
        first,
        /// Another instance is running and has received the request.
        alreadyRunning,
        /// Another instance owns the name, but has not answered in time.
        notAnswering,
        /// There is no bus, or it does not answer; this process runs as if it were the first.
        noBus,
    };

    /// Called on the main thread, after the D-Bus call has been answered. `token` is the desktop's
    /// activation token for the next window; empty if there is none.
    struct Callbacks {
        /// The program has been launched again.
        std::function<void(const std::string& token)> onActivate;
        /// An action was requested.
        std::function<void(const std::string& action, const std::string& token)> onAction;
        /// Adds further interfaces to the program's object on this connection, before it gets the
        /// name. Called at once for each connection. May be empty.
        std::function<void(sd_bus* bus, const std::string& path)> addInterfaces = {};
    };

    struct Timing {
        /// The longest wait for an answer of the bus.
        std::chrono::microseconds busPatience = std::chrono::seconds(1);
        /// The longest wait for an answer of the other instance.
        std::chrono::microseconds instancePatience = std::chrono::seconds(5);
        /// The time between two attempts to reach the bus.
        Seconds retryInterval = kRetryInterval;
    };

    /// Returns the path of the program's object, such as "/org/example/Program".
    static std::string objectPath(const std::string& id);

    /// `id` is the bus name, in the form "org.example.Program"; the object path is derived from it.
    /// The queue must outlive the object.
    SingleInstance(EpollMainQueue& queue, std::string id, Callbacks callbacks, Timing timing);
    SingleInstance(EpollMainQueue& queue, std::string id, Callbacks callbacks)
        : SingleInstance(queue, std::move(id), std::move(callbacks), Timing()) {}

    /// Claims the name, or sends the request to the instance that owns it. Call once, before the
    /// queue runs. Waits for the bus and the other instance as `Timing` says. Calls that arrive
    /// after a successful claim wait until the queue runs.
    Outcome claim(const LaunchRequest& request);

private:
    void addObject(sd_bus* bus);
    void serve(sd_bus* bus);
    Outcome takeNameOrAsk(sd_bus* bus, const LaunchRequest& request);
    BusMessage makeCall(sd_bus* bus, const LaunchRequest& request) const;
    int activate(sd_bus_message* call);

    int onActivate(sd_bus_message* call, sd_bus_error* error);
    int onOpen(sd_bus_message* call, sd_bus_error* error);
    int onActivateAction(sd_bus_message* call, sd_bus_error* error);
    static const sd_bus_vtable kApplication[];

    EpollMainQueue& queue_;
    const std::string id_;
    const std::string path_;
    const Callbacks callbacks_;
    const Timing timing_;
    /// The connection that owns the name, until `link_` takes it over.
    std::unique_ptr<sd_bus, UnrefBus> claimed_;
    BusLink link_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
