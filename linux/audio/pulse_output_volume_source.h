// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <atomic>
#include <optional>

#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_operation.h"
#include "monitors/volume_monitor.h"

namespace chimewerk {

/// The volume of the audio server's default sink as mixers show it: that of its loudest channel.
/// 100 % and more give 1 or slightly above, so that no step of 3 % is lost to rounding. The server
/// reports changes, so `volume()` makes no request. Muting does not change the volume. Without a
/// server or a sink there is no volume.
class PulseOutputVolumeSource final : public OutputVolumeSource, public PulseClient {
public:
    /// The connection must outlive the source.
    explicit PulseOutputVolumeSource(PulseConnection& connection);
    PulseOutputVolumeSource(const PulseOutputVolumeSource&) = delete;
    PulseOutputVolumeSource& operator=(const PulseOutputVolumeSource&) = delete;
    ~PulseOutputVolumeSource() override;

    std::optional<float> volume(Element element) override;

    void onServerFound(pa_context& context) override;
    void onServerLost() override;
    pa_subscription_mask_t subscriptionMask() const override;
    void onServerEvent() override { query_.refresh(); }

private:
    // These run on the connection's thread, with its lock held.
    void requestServer();
    void onServer(const pa_server_info* server);
    void onSink(const pa_sink_info& sink);
    void forget();

    PulseConnection& connection_;
    pa_context* context_ = nullptr;
    PulseQuery query_{[this] { requestServer(); }};
    // Written on the connection's thread, read on the main thread; negative if there is none.
    std::atomic<float> main_ = -1.0F;
    std::atomic<float> firstChannel_ = -1.0F;
};

}  // namespace chimewerk
