// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "linux/audio/pulse_connection.h"
#include "linux/audio/pulse_operation.h"
#include "monitors/volume_monitor.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/source_report.h"

namespace chimewerk {

/// The volume of the audio server's default sink as mixers show it: that of its loudest channel.
/// 100 % and more give 1 or slightly above, so that no step of 3 % is lost to rounding. The server
/// reports changes, so `volume()` makes no request, and each change is announced. Muting does not
/// change the volume. Without a server or a sink there is no volume.
class PulseOutputVolumeSource final : public OutputVolumeSource,
                                      public PulseClient,
                                      public ReportsItself {
public:
    /// The queue and the connection must outlive the source.
    PulseOutputVolumeSource(MainQueue& queue, PulseConnection& connection);
    PulseOutputVolumeSource(const PulseOutputVolumeSource&) = delete;
    PulseOutputVolumeSource& operator=(const PulseOutputVolumeSource&) = delete;
    ~PulseOutputVolumeSource() override;

    std::optional<float> volume(Element element) override;
    bool announcesChanges() const override { return true; }
    SourceReport report() override;

    void onServerFound(pa_context& context) override;
    void onServerLost() override;
    pa_subscription_mask_t subscriptionMask() const override;
    void onServerEvent(pa_subscription_event_type_t event, std::uint32_t index) override;

private:
    // These run on the connection's thread, with its lock held.
    void request();
    void requestServer();
    void requestSink();
    void onServer(const pa_server_info* server);
    void onSink(const pa_sink_info& sink);
    void forget();
    void set(float main, float firstChannel);

    MainQueue& queue_;
    PulseConnection& connection_;
    pa_context* context_ = nullptr;
    PulseQuery query_{[this] { request(); }};
    bool defaultMayDiffer_ = true;  // Another sink may be the default now.
    std::string sinkName_;
    std::uint32_t sinkIndex_ = PA_INVALID_INDEX;
    bool isSinkMuted_ = false;
    // Written on the connection's thread, read on the main thread; negative if there is none.
    std::atomic<float> main_ = -1.0F;
    std::atomic<float> firstChannel_ = -1.0F;
    Lifeline lifeline_;
    const MainQueue::Job announceChange_ = lifeline_.guard([this] { announce(); });
};

}  // namespace chimewerk
