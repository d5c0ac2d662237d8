#include "linux/audio/pulse_microphone.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "linux/audio/microphone_choice.h"
#include "linux/audio/pulse_question.h"
#include "linux/audio/pulse_record_stream.h"
#include "linux/audio/sample_blocks.h"

namespace chimewerk {

namespace {

using namespace std::chrono_literals;

/// A stream that ends, or cannot be made, though its source is there is tried again after this time, and less
/// and less often.
constexpr std::chrono::milliseconds kFirstRetry = 1s;
constexpr std::chrono::milliseconds kLastRetry = 1min;

class PulseAudioEngine final : public AudioEngine, public PulseClient {
public:
    explicit PulseAudioEngine(PulseConnection& connection) : connection_(connection) {}
    PulseAudioEngine(const PulseAudioEngine&) = delete;
    PulseAudioEngine& operator=(const PulseAudioEngine&) = delete;
    ~PulseAudioEngine() override { leave(); }

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
    void stop() override { leave(); }

    void serverFound(pa_context& context) override {
        context_ = &context;
        question_.ask();
    }
    void serverLost() override {
        question_.cancel();
        listenTo(std::nullopt);
        context_ = nullptr;
    }
    pa_subscription_mask_t subscriptionMask() const override {
        return static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE |
                                                   PA_SUBSCRIPTION_MASK_SERVER);
    }
    void onServerEvent() override { question_.ask(); }

private:
    static PulseAudioEngine& self(void* user) { return *static_cast<PulseAudioEngine*>(user); }

    void leave() {
        if (std::exchange(running_, false)) {
            const PulseConnection::Lock lock(connection_);
            connection_.remove(*this);
            serverLost();
        }
    }

    // These run on the connection's thread, with its lock held.

    /// Asks for the default source, and then for all sources.
    void askServer() {
        if (!question_.step(pa_context_get_server_info(
                context_,
                [](pa_context*, const pa_server_info* server, void* user) {
                    self(user).serverTold(server);
                },
                this))) {
            question_.done();
        }
    }
    void serverTold(const pa_server_info* server) {
        const char* const name = server != nullptr ? server->default_source_name : nullptr;
        choice_.emplace(name != nullptr ? name : "");
        if (!question_.step(pa_context_get_source_info_list(
                context_,
                [](pa_context*, const pa_source_info* source, int end, void* user) {
                    if (end == 0) {
                        self(user).choice_->consider(*source);
                    } else {
                        self(user).sourcesTold(end > 0);
                    }
                },
                this))) {
            question_.done();
        }
    }
    void sourcesTold(bool all) {
        if (all) {
            listenTo(choice_->best());
        }
        question_.done();
    }

    /// Records from this source, or from none. What is recorded from already, or cannot be for now, is left
    /// as it is.
    void listenTo(const std::optional<MicrophoneSource>& source) {
        if (source != source_) {
            source_ = source;
            retryDelay_ = kFirstRetry;
            record();
        }
    }
    void record() {
        retry_ = nullptr;
        stream_ = nullptr;
        blocks_.clear();
        if (source_) {
            stream_ = std::make_unique<PulseRecordStream>(
                *context_, *source_, frames_,
                PulseRecordStream::Callbacks{
                    .heard = [this](FirstChannel samples) { heard(samples); },
                    .ended = [this] { recordLater(); }});
        }
    }
    void recordLater() {
        stream_ = nullptr;
        retry_ = connection_.after(retryDelay_, [this] { record(); });
        retryDelay_ = std::min(retryDelay_ * 2, kLastRetry);
    }

    void heard(FirstChannel samples) {
        retryDelay_ = kFirstRetry;
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
    bool running_ = false;  // Main thread only.
    // Guarded by the lock:
    Tap tap_;
    std::size_t frames_ = 1;
    SampleBlocks blocks_{1};
    pa_context* context_ = nullptr;
    PulseQuery question_{[this] { askServer(); }};
    std::optional<MicrophoneChoice> choice_;  // What is known of the answer so far.
    std::optional<MicrophoneSource> source_;
    std::unique_ptr<PulseRecordStream> stream_;
    std::unique_ptr<PulseConnection::Alarm> retry_;
    std::chrono::milliseconds retryDelay_ = kFirstRetry;
};

}  // namespace

std::unique_ptr<AudioEngine> PulseMicrophone::makeEngine() {
    return std::make_unique<PulseAudioEngine>(connection_);
}

}  // namespace chimewerk
