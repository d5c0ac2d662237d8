// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "linux/audio/pulse_handles.h"

namespace chimewerk {

/// A user of the connection to the sound server. All calls come with the connection's lock held.
class PulseClient {
public:
    virtual ~PulseClient() = default;

    /// The server has been reached; `context` is valid until `onServerLost()`.
    virtual void onServerFound(pa_context& context) = 0;
    /// The server has gone, or the client is being removed: releases everything that was made on
    /// the context.
    virtual void onServerLost() = 0;

    /// The server's events that the client receives; always the same.
    virtual pa_subscription_mask_t subscriptionMask() const { return PA_SUBSCRIPTION_MASK_NULL; }
    /// One of these events has come.
    virtual void onServerEvent() {}
};

/// The program's one connection to PulseAudio, or to PipeWire by the same protocol, on a thread of
/// its own. While there is no server, the connection looks for one: after 100 ms at first, then
/// less and less often.
class PulseConnection {
public:
    /// Starts the thread. If the system is out of resources for it, there is never a server.
    /// `longestRetry` is the longest time between two looks for the server.
    explicit PulseConnection(
        std::chrono::milliseconds longestRetry = std::chrono::milliseconds(2000));
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;
    /// Ends the connection and the thread. All clients have been removed.
    ~PulseConnection();

    /// Adds a client, which must be removed before it is destroyed; calls its `onServerFound()` if
    /// there is a server. Lock not held; any thread but the connection's.
    void add(PulseClient& client);
    /// Removes a client; calls its `onServerLost()` if there is a server. No call comes after the
    /// return. Lock not held; any thread but the connection's.
    void remove(PulseClient& client);

    /// Holds the connection's lock. The context, and everything that was made on it, may be used
    /// only under the lock. The connection's thread holds it during every callback and must not
    /// take it again; no other thread takes it twice either.
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

    /// Drops the connection and makes it anew; to the clients the server goes and comes back.
    /// It frees the memory that libpulse shares with the server, which otherwise only grows.
    /// Lock held; on the connection's thread, but not in a callback of something that was made
    /// on the context.
    void reconnect();

    /// A job that runs later on the connection's thread. Destroying the alarm cancels the job.
    class Alarm {
    public:
        virtual ~Alarm() = default;
    };
    /// Runs `job` once on the connection's thread, lock held, after `delay`. Lock held; the alarm
    /// is destroyed under the lock too, or by the job itself. Only while there is a server.
    [[nodiscard]] std::unique_ptr<Alarm> after(std::chrono::milliseconds delay,
                                               std::function<void()> job);

private:
    class TimeEvent;

    void connect(pa_context_flags_t flags);
    void onStateChange();
    void subscribe();
    void dispatch(pa_subscription_event_type_t event);
    void drop();
    void retryLater();

    const std::chrono::milliseconds longestRetry_;
    const PulseHandle<pa_threaded_mainloop> loop_;  // Null if it could not be made.
    // Guarded by the lock:
    PulseHandle<pa_context> context_;
    bool ready_ = false;
    pa_subscription_mask_t subscribed_ = PA_SUBSCRIPTION_MASK_NULL;  // On this context.
    std::vector<PulseClient*> clients_;
    std::chrono::milliseconds retryDelay_;
    std::unique_ptr<Alarm> retry_;
};

}  // namespace chimewerk
