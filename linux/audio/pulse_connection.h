// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "linux/audio/boot_clock.h"
#include "linux/audio/pulse_handles.h"

namespace chimewerk {

/// A user of the connection to the audio server. All calls are made with the connection's
/// lock held.
class PulseClient {
public:
    virtual ~PulseClient() = default;

    /// The server is connected; `context` is valid until `onServerLost()`.
    virtual void onServerFound(pa_context& context) = 0;
    /// The server has gone, or the client is being removed: releases everything that was made on
    /// the context.
    virtual void onServerLost() = 0;

    /// Returns the types of events that the client receives; always the same.
    virtual pa_subscription_mask_t subscriptionMask() const { return PA_SUBSCRIPTION_MASK_NULL; }
    /// Called for each of these events, with the index of the object that it is about.
    virtual void onServerEvent(pa_subscription_event_type_t /*event*/, std::uint32_t /*index*/) {}
};

/// The program's only connection to PulseAudio, or to PipeWire by the same protocol, with its
/// own thread. While it is open and there is no server, it tries to connect: first after 100 ms,
/// then less and less often. It never starts a server.
class PulseConnection {
public:
    /// Starts the thread. If the system lacks the resources for it, there is never a server.
    /// `longestRetry` is the longest time between two attempts.
    explicit PulseConnection(
        std::chrono::milliseconds longestRetry = std::chrono::milliseconds(2000));
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;
    /// Ends the connection and the thread. All clients must have been removed.
    ~PulseConnection();

    /// Opens the connection: starts to connect and returns at once. Lock not held; any thread.
    void open();

    /// Adds a client, which must be removed before it is destroyed. Calls its `onServerFound()` if
    /// there is a server. Lock not held; any thread except the connection's.
    void add(PulseClient& client);
    /// Removes a client. Calls its `onServerLost()` if there is a server. The client is not called
    /// after this returns. Lock not held; any thread except the connection's.
    void remove(PulseClient& client);

    /// Holds the connection's lock. The context, and everything made on it, may only be used under
    /// the lock. The connection's thread holds it during every callback and must not take it again;
    /// no other thread may take it twice either.
    class Lock {
    public:
        explicit Lock(PulseConnection& connection);
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        ~Lock();

    private:
        pa_threaded_mainloop* const loop_;
    };

    /// Starts to connect if there is no server, and returns at once. Lock held.
    void connectNow();

    /// Drops the connection and makes a new one; for the clients, the server goes and returns. This
    /// frees the memory that libpulse shares with the server, which otherwise only grows. Lock
    /// held; on the connection's thread, but not in a callback of an object made on the context.
    void reconnect();

    /// A scheduled job on the connection's thread. Destroying the alarm cancels the job.
    class Alarm {
    public:
        virtual ~Alarm() = default;
    };
    /// Runs `job` once on the connection's thread, lock held, after `delay`. Lock held; the alarm
    /// must be destroyed under the lock too, or by the job itself. Only while there is a server.
    [[nodiscard]] std::unique_ptr<Alarm> after(std::chrono::milliseconds delay,
                                               std::function<void()> job);

    /// Runs a job on the connection's thread, lock held, at a time that can be changed. Must be
    /// made, used and destroyed with the lock held.
    class Timer {
    public:
        virtual ~Timer() = default;
        /// Sets when the job runs next; none for never. If the program or the machine sleeps at
        /// that time, the job runs when it wakes.
        virtual void set(std::optional<BootClock::time_point> time) = 0;
    };
    /// If the system is out of resources, the job never runs.
    [[nodiscard]] std::unique_ptr<Timer> makeTimer(std::function<void()> job);

private:
    class TimeEvent;
    class BootTimer;

    void connect();
    void onStateChange();
    void subscribe();
    void dispatch(pa_subscription_event_type_t event, std::uint32_t index);
    void drop();
    void retryLater();

    const std::chrono::milliseconds longestRetry_;
    const PulseHandle<pa_threaded_mainloop> loop_;  // Null if it could not be made.
    // Guarded by the lock:
    PulseHandle<pa_context> context_;
    bool ready_ = false;
    pa_subscription_mask_t subscribed_ = PA_SUBSCRIPTION_MASK_NULL;  // For this context.
    std::vector<PulseClient*> clients_;
    std::chrono::milliseconds retryDelay_;
    std::unique_ptr<Alarm> retry_;
};

}  // namespace chimewerk
