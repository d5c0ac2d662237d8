#pragma once

#include <pulse/pulseaudio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace chimewerk {

/// What lives on a connection to the sound server. All calls come on the connection's thread, with its lock
/// held.
class PulseClient {
public:
    virtual ~PulseClient() = default;

    /// The server has been reached; `context` is valid until `serverLost()`.
    virtual void serverFound(pa_context& context) = 0;
    /// The server has gone, and with it everything that was made on the context; what is left of that is
    /// released now.
    virtual void serverLost() = 0;

    /// What the part wants news of; always the same.
    virtual pa_subscription_mask_t subscriptionMask() const { return PA_SUBSCRIPTION_MASK_NULL; }
    /// Something that the part wants news of has come, gone or changed.
    virtual void onServerEvent() {}
};

/// The program's one connection to PulseAudio, or to PipeWire by the same protocol, on a thread of its own.
/// When the server goes away, or is not there yet, it is looked for until it is found: soon at first, then
/// every two seconds.
class PulseConnection {
public:
    /// Starts the thread; without one (the system is out of resources) there is never a server.
    PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;
    /// Ends the connection and the thread; the parts hear no more.
    ~PulseConnection();

    /// Adds a part, which must outlive the connection's use of it: it is removed before it ends. Any thread
    /// but the connection's.
    void add(PulseClient& part);
    void remove(PulseClient& part);

    /// Holds the connection's lock, under which alone its context, and whatever was made on it, may be used.
    class Lock {
    public:
        explicit Lock(PulseConnection& connection);
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        ~Lock();

    private:
        pa_threaded_mainloop* const loop_;
    };

    /// Looks for the server at once if there is none. Lock held.
    void connectNow();

    /// Connects anew, for the parts as if the server had gone and come. It gives back the memory that the
    /// library shares with the server, which only grows while a connection lasts. Lock held; from the
    /// connection's thread, and not from within a callback of what lives on the context.
    void reconnect();

    /// A job in the future of the connection's thread; it does not run once the handle is gone.
    class Alarm {
    public:
        virtual ~Alarm() = default;
    };
    /// Runs `job` on the connection's thread, with its lock held, after `delay`. Lock held; the handle too is
    /// destroyed under the lock, or by the job itself.
    [[nodiscard]] std::unique_ptr<Alarm> after(std::chrono::milliseconds delay,
                                               std::function<void()> job);

private:
    class TimeEvent;
    struct FreeLoop {
        void operator()(pa_threaded_mainloop* loop) const;
    };

    void connect(pa_context_flags_t flags);
    void stateChanged();
    void subscribe();
    void dispatch(pa_subscription_event_type_t news);
    void drop();
    void retryLater();

    std::unique_ptr<pa_threaded_mainloop, FreeLoop> loop_;
    // Guarded by the lock:
    pa_context* context_ = nullptr;
    bool ready_ = false;
    pa_subscription_mask_t subscribed_ = PA_SUBSCRIPTION_MASK_NULL;  // On this context.
    std::vector<PulseClient*> parts_;
    std::chrono::milliseconds retryDelay_;
    std::unique_ptr<Alarm> retry_;
};

}  // namespace chimewerk
