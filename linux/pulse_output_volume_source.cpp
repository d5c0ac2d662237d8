#include "linux/pulse_output_volume_source.h"

#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

PulseOutputVolumeSource& self(void* user) {
    return *static_cast<PulseOutputVolumeSource*>(user);
}

float asShown(pa_volume_t volume) {
    return std::min(1.0F, static_cast<float>(volume) / static_cast<float>(PA_VOLUME_NORM));
}

/// False when the request could not be made.
bool sent(pa_operation* operation) {
    if (operation == nullptr) {
        return false;
    }
    pa_operation_unref(operation);
    return true;
}

}  // namespace

PulseOutputVolumeSource::PulseOutputVolumeSource(PulseConnection& connection) : connection_(connection) {
    connection_.add(*this);
}

PulseOutputVolumeSource::~PulseOutputVolumeSource() {
    connection_.remove(*this);
    const PulseConnection::Lock lock(connection_);
    if (context_ != nullptr) {
        pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    }
}

std::optional<float> PulseOutputVolumeSource::volume(Element element) {
    const float value = element == Element::main ? main_ : firstChannel_;
    return value < 0 ? std::nullopt : std::optional(value);
}

void PulseOutputVolumeSource::serverFound(pa_context& context) {
    context_ = &context;
    pa_context_set_subscribe_callback(
        context_,
        [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* user) { self(user).look(); },
        this);
    constexpr auto kOfInterest =
        static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER);
    sent(pa_context_subscribe(context_, kOfInterest, nullptr, nullptr));
    look();
}

void PulseOutputVolumeSource::serverLost() {
    context_ = nullptr;
    looking_ = lookAgain_ = false;
    forget();
}

/// Asks for the default sink and its volume. One question at a time, however many changes come.
void PulseOutputVolumeSource::look() {
    if (std::exchange(looking_, true)) {
        lookAgain_ = true;
        return;
    }
    if (!sent(pa_context_get_server_info(
            context_,
            [](pa_context*, const pa_server_info* server, void* user) { self(user).serverTold(server); },
            this))) {
        looking_ = false;
    }
}

void PulseOutputVolumeSource::serverTold(const pa_server_info* server) {
    if (server == nullptr || server->default_sink_name == nullptr ||
        !sent(pa_context_get_sink_info_by_name(
            context_, server->default_sink_name,
            [](pa_context*, const pa_sink_info* sink, int end, void* user) {
                if (end == 0) {
                    self(user).sinkTold(sink);
                } else {
                    if (end < 0) {
                        self(user).forget();
                    }
                    self(user).lookDone();
                }
            },
            this))) {
        forget();
        lookDone();
    }
}

void PulseOutputVolumeSource::sinkTold(const pa_sink_info* sink) {
    if (sink->volume.channels == 0) {
        forget();
        return;
    }
    main_ = asShown(pa_cvolume_avg(&sink->volume));
    firstChannel_ = asShown(sink->volume.values[0]);
}

void PulseOutputVolumeSource::lookDone() {
    looking_ = false;
    if (std::exchange(lookAgain_, false)) {
        look();
    }
}

void PulseOutputVolumeSource::forget() {
    main_ = -1.0F;
    firstChannel_ = -1.0F;
}

}  // namespace chimewerk
