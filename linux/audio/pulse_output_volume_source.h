#pragma once

#include <atomic>
#include <optional>

#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_question.h"
#include "monitors/volume_monitor.h"

namespace chimewerk {

/// The volume of the sound server's default sink, as mixers show it: 1 is 100 %, and what is beyond counts as
/// that. The server tells of changes, so that a look asks nobody. Muting leaves the volume as it is. While
/// there is no server, or no sink, there is no volume.
class PulseOutputVolumeSource final : public OutputVolumeSource, public PulseClient {
public:
    /// The connection outlives the source.
    explicit PulseOutputVolumeSource(PulseConnection& connection);
    PulseOutputVolumeSource(const PulseOutputVolumeSource&) = delete;
    PulseOutputVolumeSource& operator=(const PulseOutputVolumeSource&) = delete;
    ~PulseOutputVolumeSource() override;

    std::optional<float> volume(Element element) override;

    void serverFound(pa_context& context) override;
    void serverLost() override;
    pa_subscription_mask_t subscriptionMask() const override;
    void onServerEvent() override { question_.ask(); }

private:
    // These run on the connection's thread, with its lock held.
    void askServer();
    void serverTold(const pa_server_info* server);
    void sinkTold(const pa_sink_info* sink);
    void forget();

    PulseConnection& connection_;
    pa_context* context_ = nullptr;
    PulseQuery question_{[this] { askServer(); }};
    // Written on the connection's thread, read on the main thread; negative when there is none.
    std::atomic<float> main_ = -1.0F;
    std::atomic<float> firstChannel_ = -1.0F;
};

}  // namespace chimewerk
