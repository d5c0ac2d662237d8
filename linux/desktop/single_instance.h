#pragma once

#include <functional>
#include <memory>
#include <string>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/bus_link.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// What a launch of the program asks of the instance that runs already.
struct LaunchRequest {
    /// One of SingleInstance's actions; empty for showing itself.
    std::string action = {};
    /// $XDG_ACTIVATION_TOKEN, by which the desktop lets a new window come to the front. Empty for none.
    std::string activationToken = {};
    /// $DESKTOP_STARTUP_ID, the same of an older kind.
    std::string startupId = {};

    /// With the tokens of this process.
    static LaunchRequest ofThisProcess(std::string action = {});
};

/// The program's one place on the session bus: whoever owns the well-known name is the instance of this
/// session, and serves `org.freedesktop.Application` to whoever launches the program again. When the bus goes
/// away and comes back the name is taken anew; if another instance has it by then, this one goes on without.
/// The name is free again when the object is destroyed, so it should go last of all. Main thread only; must
/// not be destroyed from within a callback.
class SingleInstance {
public:
    static constexpr const char* kOpenDashboard = "open-dashboard";
    static constexpr const char* kOpenHelp = "open-help";
    static constexpr const char* kQuit = "quit";

    enum class Outcome {
        /// This is the instance of the session.
        first,
        /// There is one already, and it has been asked.
        alreadyRunning,
        /// There is no bus to find out, or none that answers; this one runs as if it were the first.
        noBus,
    };

    /// They run on the main thread, later. The token is the desktop's leave to come to the front, or empty.
    struct Callbacks {
        /// The program has been launched again.
        std::function<void(const std::string& token)> onActivate;
        /// One of the actions is wanted.
        std::function<void(const std::string& action, const std::string& token)> onAction;
    };

    /// `id` is the name, in the form "org.example.Program"; the object's path is made from it. The queue
    /// outlives the object.
    SingleInstance(EpollMainQueue& queue, std::string id, Callbacks callbacks);

    /// Takes the name, or hands the request to the instance that has it. Called once, before the queue runs:
    /// it waits for the bus up to 1 s, and for the other instance up to 5 s. Who is first has calls waiting
    /// from that moment on, and they are answered as soon as the queue runs.
    Outcome claim(const LaunchRequest& request);

private:
    int addObject(sd_bus* bus);
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
    /// The connection on which the name has been taken, until the link takes it over.
    std::unique_ptr<sd_bus, UnrefBus> claimed_;
    BusLink link_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
