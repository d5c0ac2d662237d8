#include "linux/audio/pulse_connection.h"

#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

constexpr std::chrono::milliseconds kFirstRetry{100};
constexpr std::chrono::milliseconds kLastRetry{2000};

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
        // The job may destroy this handle, and itself with it.
        const auto job = std::move(static_cast<TimeEvent*>(user)->job_);
        job();
    }

    pa_mainloop_api& api_;
    std::function<void()> job_;
    pa_time_event* event_;
};

void PulseConnection::FreeLoop::operator()(pa_threaded_mainloop* loop) const {
    pa_threaded_mainloop_free(loop);
}

PulseConnection::Lock::Lock(PulseConnection& connection) : loop_(connection.loop_.get()) {
    pa_threaded_mainloop_lock(loop_);
}

PulseConnection::Lock::~Lock() {
    pa_threaded_mainloop_unlock(loop_);
}

PulseConnection::PulseConnection() : loop_(pa_threaded_mainloop_new()), retryDelay_(kFirstRetry) {
    pa_threaded_mainloop_set_name(loop_.get(), "chimewerk-audio");
    pa_threaded_mainloop_start(loop_.get());
    const Lock lock(*this);
    connect(PA_CONTEXT_NOFLAGS);
}

PulseConnection::~PulseConnection() {
    {
        const Lock lock(*this);
        retry_ = nullptr;
        drop();
    }
    pa_threaded_mainloop_stop(loop_.get());
}

void PulseConnection::add(PulseClient& part) {
    const Lock lock(*this);
    parts_.push_back(&part);
    if (ready_) {
        subscribe();
        part.serverFound(*context_);
    }
}

void PulseConnection::remove(PulseClient& part) {
    const Lock lock(*this);
    std::erase(parts_, &part);
    if (ready_) {
        subscribe();
    }
}

void PulseConnection::connectNow() {
    if (context_ == nullptr) {
        retryDelay_ = kFirstRetry;
        connect(PA_CONTEXT_NOFLAGS);
    }
}

void PulseConnection::reconnect() {
    drop();
    connect(PA_CONTEXT_NOAUTOSPAWN);
}

std::unique_ptr<PulseConnection::Alarm> PulseConnection::after(std::chrono::milliseconds delay,
                                                               std::function<void()> job) {
    return std::make_unique<TimeEvent>(*pa_threaded_mainloop_get_api(loop_.get()), delay,
                                       std::move(job));
}

void PulseConnection::connect(pa_context_flags_t flags) {
    retry_ = nullptr;
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Chimewerk");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ID, CHIMEWERK_ID);
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, CHIMEWERK_ID);
    context_ = pa_context_new_with_proplist(pa_threaded_mainloop_get_api(loop_.get()), nullptr,
                                            properties);
    pa_proplist_free(properties);
    if (context_ == nullptr) {
        retryLater();
        return;
    }
    pa_context_set_state_callback(
        context_,
        [](pa_context*, void* user) { static_cast<PulseConnection*>(user)->stateChanged(); }, this);
    pa_context_set_subscribe_callback(
        context_,
        [](pa_context*, pa_subscription_event_type_t news, std::uint32_t, void* user) {
            static_cast<PulseConnection*>(user)->dispatch(news);
        },
        this);
    if (pa_context_connect(context_, nullptr, flags, nullptr) < 0 && context_ != nullptr) {
        drop();
        retryLater();
    }
}

void PulseConnection::stateChanged() {
    switch (pa_context_get_state(context_)) {
        case PA_CONTEXT_READY:
            ready_ = true;
            retryDelay_ = kFirstRetry;
            subscribe();
            for (PulseClient* const part : parts_) {
                part->serverFound(*context_);
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

/// Asks for the news that the parts want together, before they look how things stand.
void PulseConnection::subscribe() {
    auto wanted = PA_SUBSCRIPTION_MASK_NULL;
    for (const PulseClient* const part : parts_) {
        wanted = static_cast<pa_subscription_mask_t>(wanted | part->subscriptionMask());
    }
    if (std::exchange(subscribed_, wanted) != wanted) {
        if (pa_operation* const asking = pa_context_subscribe(context_, wanted, nullptr, nullptr)) {
            pa_operation_unref(asking);
        }
    }
}

void PulseConnection::dispatch(pa_subscription_event_type_t news) {
    for (PulseClient* const part : parts_) {
        if (pa_subscription_match_flags(part->subscriptionMask(), news)) {
            part->onServerEvent();
        }
    }
}

void PulseConnection::drop() {
    if (context_ == nullptr) {
        return;
    }
    if (std::exchange(ready_, false)) {
        for (PulseClient* const part : parts_) {
            part->serverLost();
        }
    }
    pa_context* const context = std::exchange(context_, nullptr);
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_set_subscribe_callback(context, nullptr, nullptr);
    subscribed_ = PA_SUBSCRIPTION_MASK_NULL;
    pa_context_disconnect(context);
    pa_context_unref(context);
}

void PulseConnection::retryLater() {
    // Without starting a server: that is for a sound that wants to be heard, not for a look now and then.
    retry_ = after(retryDelay_, [this] { connect(PA_CONTEXT_NOAUTOSPAWN); });
    retryDelay_ = std::min(retryDelay_ * 2, kLastRetry);
}

}  // namespace chimewerk
