// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/pulse_output_volume_source.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace chimewerk {

namespace {

PulseOutputVolumeSource& self(void* user) {
    return *static_cast<PulseOutputVolumeSource*>(user);
}

/// The server rounds a step of 3 % down, to 1966 or 1965 of the 65536 units that are 100 %. On this
/// slightly shorter scale it is still 0.03.
constexpr float kScale = 65500;

float asShown(pa_volume_t volume) {
    return static_cast<float>(std::min(volume, PA_VOLUME_NORM)) / kScale;
}

}  // namespace

PulseOutputVolumeSource::PulseOutputVolumeSource(MainQueue& queue, PulseConnection& connection)
    : queue_(queue), connection_(connection) {
    connection_.add(*this);
}

PulseOutputVolumeSource::~PulseOutputVolumeSource() {
    connection_.remove(*this);
}

std::optional<float> PulseOutputVolumeSource::volume(Element element) {
    const float value = element == Element::main ? main_ : firstChannel_;
    return value < 0 ? std::nullopt : std::optional(value);
}

SourceReport PulseOutputVolumeSource::report() {
    const PulseConnection::Lock lock(connection_);
    if (context_ == nullptr) {
        return {.mechanism = "no audio server",
                .missing = "No audio server answers.",
                .advice = "Install the package pipewire-pulse, and log in again."};
    }
    if (main_ < 0) {
        return {.mechanism = "pulse: no output",
                .missing = "The audio server has no output device.",
                .advice = "Choose one in the sound settings."};
    }
    const auto percent = std::lround(main_ * 100);
    SourceReport report{.mechanism = "pulse: " + sinkName_ + ", " + std::to_string(percent) + " %"};
    if (isSinkMuted_ || percent == 0) {
        report.mechanism += isSinkMuted_ ? ", muted" : "";
        report.missing = "The output device is silent.";
        report.advice = "Turn it up in the sound settings.";
    }
    return report;
}

void PulseOutputVolumeSource::onServerFound(pa_context& context) {
    context_ = &context;
    query_.refresh();
}

pa_subscription_mask_t PulseOutputVolumeSource::subscriptionMask() const {
    return static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK |
                                               PA_SUBSCRIPTION_MASK_SERVER);
}

void PulseOutputVolumeSource::onServerLost() {
    context_ = nullptr;
    query_.cancel();
    forget();
}

/// A sink changes also when it begins or ceases to play, so each sound of ours changes it.
void PulseOutputVolumeSource::onServerEvent(pa_subscription_event_type_t event,
                                            std::uint32_t index) {
    const bool isChangeOfSink =
        (event & PA_SUBSCRIPTION_EVENT_FACILITY_MASK) == PA_SUBSCRIPTION_EVENT_SINK &&
        (event & PA_SUBSCRIPTION_EVENT_TYPE_MASK) == PA_SUBSCRIPTION_EVENT_CHANGE;
    if (isChangeOfSink && sinkIndex_ != PA_INVALID_INDEX && index != sinkIndex_) {
        return;
    }
    defaultMayDiffer_ = defaultMayDiffer_ || !isChangeOfSink;
    query_.refresh();
}

void PulseOutputVolumeSource::request() {
    if (std::exchange(defaultMayDiffer_, false)) {
        requestServer();
    } else {
        requestSink();
    }
}

/// Requests the name of the default sink, and then its volume.
void PulseOutputVolumeSource::requestServer() {
    if (!query_.request(pa_context_get_server_info(
            context_,
            [](pa_context*, const pa_server_info* server, void* user) {
                self(user).onServer(server);
            },
            this))) {
        defaultMayDiffer_ = true;
        query_.finish();
    }
}

void PulseOutputVolumeSource::onServer(const pa_server_info* server) {
    if (server == nullptr || server->default_sink_name == nullptr) {
        forget();
        query_.finish();
        return;
    }
    sinkName_ = server->default_sink_name;
    requestSink();
}

void PulseOutputVolumeSource::requestSink() {
    if (!query_.request(pa_context_get_sink_info_by_name(
            context_, sinkName_.c_str(),
            [](pa_context*, const pa_sink_info* sink, int end, void* user) {
                if (end == 0) {
                    self(user).onSink(*sink);
                    return;
                }
                if (end < 0) {
                    self(user).forget();
                }
                self(user).query_.finish();
            },
            this))) {
        forget();
        query_.finish();
    }
}

void PulseOutputVolumeSource::onSink(const pa_sink_info& sink) {
    sinkIndex_ = sink.index;
    if (sink.volume.channels == 0) {
        set(-1.0F, -1.0F);
        return;
    }
    isSinkMuted_ = sink.mute != 0;
    set(asShown(pa_cvolume_max(&sink.volume)), asShown(sink.volume.values[0]));
}

void PulseOutputVolumeSource::forget() {
    defaultMayDiffer_ = true;
    sinkIndex_ = PA_INVALID_INDEX;
    set(-1.0F, -1.0F);
}

void PulseOutputVolumeSource::set(float main, float firstChannel) {
    const float mainBefore = main_.exchange(main);
    const float firstChannelBefore = firstChannel_.exchange(firstChannel);
    if (main != mainBefore || firstChannel != firstChannelBefore) {
        queue_.post(announceChange_);
    }
}

}  // namespace chimewerk
