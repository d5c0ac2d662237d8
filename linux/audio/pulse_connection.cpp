// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/pulse_connection.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

namespace {

constexpr std::chrono::milliseconds kFirstRetry{100};

/// Returns a running main loop with its thread; null if the system lacks resources.
PulseHandle<pa_threaded_mainloop> startLoop() {
    PulseHandle<pa_threaded_mainloop> loop(pa_threaded_mainloop_new());
    if (loop) {
        pa_threaded_mainloop_set_name(loop.get(), "chimewerk-audio");
        if (pa_threaded_mainloop_start(loop.get()) < 0) {
            loop = nullptr;
        }
    }
    return loop;
}

}  // namespace

class PulseConnection::TimeEvent final : public Alarm {
public:
    TimeEvent(pa_mainloop_api& api, std::chrono::milliseconds delay, std::function<void()> job)
        : api_(api), job_(std::move(job)) {
        timeval when{};
        pa_timeval_add(pa_gettimeofday(&when),
                       static_cast<pa_usec_t>(delay.count()) * PA_USEC_PER_MSEC);
        event_ = api_.time_new(&api_, &when, fire, this);
    }
    TimeEvent(const TimeEvent&) = delete;
    TimeEvent& operator=(const TimeEvent&) = delete;
    ~TimeEvent() override { api_.time_free(event_); }

private:
    static void fire(pa_mainloop_api* /*api*/, pa_time_event* /*event*/, const timeval* /*when*/,
                     void* user) {
        // The job may destroy this alarm, so it is moved out first.
        const auto job = std::move(static_cast<TimeEvent*>(user)->job_);
        job();
    }

    pa_mainloop_api& api_;
    std::function<void()> job_;
    pa_time_event* event_;
};

class PulseConnection::BootTimer final : public Timer {
public:
    /// `api` is null if there is no main loop.
    BootTimer(pa_mainloop_api* api, std::function<void()> job)
        : api_(api),
          job_(std::move(job)),
          timer_(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {
        if (api_ != nullptr && timer_) {
            event_ = api_->io_new(api_, timer_.get(), PA_IO_EVENT_INPUT, fire, this);
        }
    }
    BootTimer(const BootTimer&) = delete;
    BootTimer& operator=(const BootTimer&) = delete;
    ~BootTimer() override {
        if (event_ != nullptr) {
            api_->io_free(event_);
        }
    }

    void set(std::optional<BootClock::time_point> time) override {
        if (event_ == nullptr || time == time_) {
            return;
        }
        time_ = time;
        itimerspec setting{};
        if (time) {
            const auto since = time->time_since_epoch();
            const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
            setting.it_value = {.tv_sec = seconds.count(), .tv_nsec = (since - seconds).count()};
        }
        timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME, &setting, nullptr);
    }

private:
    static void fire(pa_mainloop_api* /*api*/, pa_io_event* /*event*/, int timer,
                     pa_io_event_flags_t /*flags*/, void* user) {
        std::uint64_t count = 0;
        BootTimer& self = *static_cast<BootTimer*>(user);
        if (read(timer, &count, sizeof count) > 0) {
            self.time_.reset();
            self.job_();
        }
    }

    pa_mainloop_api* const api_;
    const std::function<void()> job_;
    const FileDescriptor timer_;
    pa_io_event* event_ = nullptr;
    std::optional<BootClock::time_point> time_;
};

PulseConnection::Lock::Lock(PulseConnection& connection) : loop_(connection.loop_.get()) {
    if (loop_ != nullptr) {
        pa_threaded_mainloop_lock(loop_);
    }
}

PulseConnection::Lock::~Lock() {
    if (loop_ != nullptr) {
        pa_threaded_mainloop_unlock(loop_);
    }
}

PulseConnection::PulseConnection(std::chrono::milliseconds longestRetry)
    : longestRetry_(longestRetry), loop_(startLoop()), retryDelay_(kFirstRetry) {}

PulseConnection::~PulseConnection() {
    if (!loop_) {
        return;
    }
    {
        const Lock lock(*this);
        retry_ = nullptr;
        drop();
    }
    pa_threaded_mainloop_stop(loop_.get());
}

void PulseConnection::add(PulseClient& client) {
    const Lock lock(*this);
    clients_.push_back(&client);
    if (ready_) {
        subscribe();
        client.onServerFound(*context_);
    }
}

void PulseConnection::remove(PulseClient& client) {
    const Lock lock(*this);
    std::erase(clients_, &client);
    if (ready_) {
        client.onServerLost();
        subscribe();
    }
}

void PulseConnection::open() {
    const Lock lock(*this);
    connectNow();
}

/// Connecting reads files and may ask the display for the server's address, so the connection's
/// thread does it.
void PulseConnection::connectNow() {
    if (loop_ && !context_) {
        retryDelay_ = kFirstRetry;
        retry_ = after(std::chrono::milliseconds(0), [this] { connect(); });
    }
}

void PulseConnection::reconnect() {
    drop();
    connect();
}

std::unique_ptr<PulseConnection::Alarm> PulseConnection::after(std::chrono::milliseconds delay,
                                                               std::function<void()> job) {
    return std::make_unique<TimeEvent>(*pa_threaded_mainloop_get_api(loop_.get()), delay,
                                       std::move(job));
}

std::unique_ptr<PulseConnection::Timer> PulseConnection::makeTimer(std::function<void()> job) {
    return std::make_unique<BootTimer>(loop_ ? pa_threaded_mainloop_get_api(loop_.get()) : nullptr,
                                       std::move(job));
}

void PulseConnection::connect() {
    retry_ = nullptr;
    const PulseHandle<pa_proplist> properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Chimewerk");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ID, CHIMEWERK_ID);
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, CHIMEWERK_ID);
    context_.reset(pa_context_new_with_proplist(pa_threaded_mainloop_get_api(loop_.get()), nullptr,
                                                properties.get()));
    if (!context_) {
        retryLater();
        return;
    }
    pa_context_set_state_callback(
        context_.get(),
        [](pa_context*, void* user) { static_cast<PulseConnection*>(user)->onStateChange(); },
        this);
    pa_context_set_subscribe_callback(
        context_.get(),
        [](pa_context*, pa_subscription_event_type_t event, std::uint32_t index, void* user) {
            static_cast<PulseConnection*>(user)->dispatch(event, index);
        },
        this);
    // Does not start a server: a desktop that wants one starts it when its socket is used. The
    // state callback may already have reported a failure and dropped the context.
    if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 &&
        context_) {
        drop();
        retryLater();
    }
}

void PulseConnection::onStateChange() {
    switch (pa_context_get_state(context_.get())) {
        case PA_CONTEXT_READY:
            ready_ = true;
            retryDelay_ = kFirstRetry;
            subscribe();
            for (PulseClient* const client : clients_) {
                client->onServerFound(*context_);
            }
            break;
        case PA_CONTEXT_FAILED:
        case PA_CONTEXT_TERMINATED:
            drop();
            retryLater();
            break;
        default:
            break;
    }
}

/// Subscribes to the events of all clients together. This comes before clients read the server's
/// state, so that no change is missed.
void PulseConnection::subscribe() {
    auto mask = PA_SUBSCRIPTION_MASK_NULL;
    for (const PulseClient* const client : clients_) {
        mask = static_cast<pa_subscription_mask_t>(mask | client->subscriptionMask());
    }
    if (std::exchange(subscribed_, mask) != mask) {
        const PulseHandle<pa_operation> request(
            pa_context_subscribe(context_.get(), mask, nullptr, nullptr));
    }
}

void PulseConnection::dispatch(pa_subscription_event_type_t event, std::uint32_t index) {
    for (PulseClient* const client : clients_) {
        if (pa_subscription_match_flags(client->subscriptionMask(), event)) {
            client->onServerEvent(event, index);
        }
    }
}

void PulseConnection::drop() {
    if (!context_) {
        return;
    }
    if (std::exchange(ready_, false)) {
        for (PulseClient* const client : clients_) {
            client->onServerLost();
        }
    }
    const PulseHandle<pa_context> context = std::move(context_);
    pa_context_set_state_callback(context.get(), nullptr, nullptr);
    pa_context_set_subscribe_callback(context.get(), nullptr, nullptr);
    subscribed_ = PA_SUBSCRIPTION_MASK_NULL;
    pa_context_disconnect(context.get());
}

void PulseConnection::retryLater() {
    retry_ = after(retryDelay_, [this] { connect(); });
    retryDelay_ = std::min(retryDelay_ * 2, longestRetry_);
}

}  // namespace chimewerk
