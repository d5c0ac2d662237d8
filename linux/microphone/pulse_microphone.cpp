// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/microphone/pulse_microphone.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "linux/audio/pulse_operation.h"
#include "linux/microphone/microphone_choice.h"
#include "linux/microphone/pulse_record_stream.h"
#include "linux/microphone/sample_blocks.h"

namespace chimewerk {

namespace {

constexpr std::chrono::milliseconds kLongestRetry = std::chrono::minutes(1);

class PulseAudioEngine final : public AudioEngine, public PulseClient {
public:
    PulseAudioEngine(PulseConnection& connection, std::chrono::milliseconds firstRetry,
                     std::shared_ptr<std::string> recorded)
        : connection_(connection), firstRetry_(firstRetry), recorded_(std::move(recorded)) {}
    PulseAudioEngine(const PulseAudioEngine&) = delete;
    PulseAudioEngine& operator=(const PulseAudioEngine&) = delete;
    ~PulseAudioEngine() override { PulseAudioEngine::stop(); }

    void installTap(std::size_t frames, Tap tap) override {
        const PulseConnection::Lock lock(connection_);
        frames_ = frames;
        blocks_ = SampleBlocks(frames);
        tap_ = std::move(tap);
    }
    void removeTap() override {
        const PulseConnection::Lock lock(connection_);
        tap_ = nullptr;
    }
    bool start() override {
        if (!std::exchange(running_, true)) {
            connection_.add(*this);
        }
        return true;
    }
    void stop() override {
        if (std::exchange(running_, false)) {
            connection_.remove(*this);
        }
    }

    void onServerFound(pa_context& context) override {
        context_ = &context;
        query_.refresh();
    }
    void onServerLost() override {
        query_.cancel();
        listenTo(std::nullopt);
        context_ = nullptr;
    }
    pa_subscription_mask_t subscriptionMask() const override {
        return static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE |
                                                   PA_SUBSCRIPTION_MASK_SERVER);
    }
    void onServerEvent(pa_subscription_event_type_t /*event*/, std::uint32_t /*index*/) override {
        query_.refresh();
    }

private:
    static PulseAudioEngine& self(void* user) { return *static_cast<PulseAudioEngine*>(user); }

    // These run on the connection's thread, with its lock held.

    /// Requests the name of the default source, and then all sources.
    void requestServer() {
        if (!query_.request(pa_context_get_server_info(
                context_,
                [](pa_context*, const pa_server_info* server, void* user) {
                    self(user).onServer(server);
                },
                this))) {
            query_.finish();
        }
    }
    void onServer(const pa_server_info* server) {
        const char* const name = server != nullptr ? server->default_source_name : nullptr;
        choice_.emplace(name != nullptr ? name : "");
        if (!query_.request(pa_context_get_source_info_list(
                context_,
                [](pa_context*, const pa_source_info* source, int end, void* user) {
                    if (end == 0) {
                        self(user).choice_->consider(*source);
                    } else {
                        self(user).onSources(end > 0);
                    }
                },
                this))) {
            query_.finish();
        }
    }
    void onSources(bool all) {
        if (all) {
            listenTo(choice_->best());
        }
        query_.finish();
    }

    /// Records from this source, or from none. Does nothing if the source is the same as before,
    /// even if it cannot be recorded now.
    void listenTo(const std::optional<MicrophoneSource>& source) {
        if (source != source_) {
            source_ = source;
            *recorded_ = source ? source->name : "";
            retryDelay_ = firstRetry_;
            record();
        }
    }
    void record() {
        retry_ = nullptr;
        stream_ = nullptr;
        blocks_.clear();
        if (source_) {
            stream_ = std::make_unique<PulseRecordStream>(
                connection_, *context_, *source_, frames_,
                PulseRecordStream::Callbacks{
                    .heard = [this](FirstChannel samples) { heard(samples); },
                    .ended = [this] { recordLater(); }});
        }
    }
    void recordLater() {
        stream_ = nullptr;
        retry_ = connection_.after(retryDelay_, [this] { record(); });
        retryDelay_ = std::min(retryDelay_ * 2, kLongestRetry);
    }

    void heard(FirstChannel samples) {
        retryDelay_ = firstRetry_;
        if (!tap_) {
            return;
        }
        if (samples) {
            blocks_.push(*samples, tap_);
        } else {
            blocks_.clear();
            tap_(std::nullopt);
        }
    }

    PulseConnection& connection_;
    const std::chrono::milliseconds firstRetry_;
    const std::shared_ptr<std::string> recorded_;
    bool running_ = false;  // Main thread only.
    // Guarded by the lock:
    Tap tap_;
    std::size_t frames_ = 1;
    SampleBlocks blocks_{1};
    pa_context* context_ = nullptr;
    PulseQuery query_{[this] { requestServer(); }};
    std::optional<MicrophoneChoice> choice_;  // Among the sources received so far.
    std::optional<MicrophoneSource> source_;
    std::unique_ptr<PulseRecordStream> stream_;
    std::unique_ptr<PulseConnection::Alarm> retry_;
    std::chrono::milliseconds retryDelay_ = firstRetry_;
};

}  // namespace

std::unique_ptr<AudioEngine> PulseMicrophone::makeEngine() {
    recorded_ = std::make_shared<std::string>();
    return std::make_unique<PulseAudioEngine>(connection_, firstRetry_, recorded_);
}

SourceReport PulseMicrophone::report() {
    const PulseConnection::Lock lock(connection_);
    if (!recorded_->empty()) {
        return {.mechanism = "pulse: " + *recorded_};
    }
    return {.mechanism = "no microphone",
            .missing = "The audio server offers no microphone, or none but a Bluetooth headset.",
            .advice = "Switch one on in the sound settings."};
}

}  // namespace chimewerk
