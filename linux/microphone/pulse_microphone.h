// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "linux/audio/pulse_connection.h"
#include "monitors/microphone.h"
#include "platform/source_report.h"

namespace chimewerk {

/// The built-in microphone, or the best of the audio server's other sources (see
/// microphone_choice.h). Taps are called on the connection's thread, with its lock held, with
/// buffers of exactly the requested length.
///
/// While an engine runs, it follows changes of servers, sources and defaults. While there is no
/// microphone, nothing runs.
///
/// An audio server lets every program of the user record, so access is always granted. If a server
/// refuses anyway, the engine stays silent.
class PulseMicrophone final : public Microphone, public ReportsItself {
public:
    /// The connection must outlive the engines. A stream that ends or cannot be made, although its
    /// source exists, is made again after `firstRetry`, then less and less often.
    explicit PulseMicrophone(PulseConnection& connection,
                             std::chrono::milliseconds firstRetry = std::chrono::milliseconds(1000))
        : connection_(connection), firstRetry_(firstRetry) {}

    Authorization authorization() override { return Authorization::authorized; }
    void requestAccess(std::function<void(bool granted)> answered) override { answered(true); }
    std::unique_ptr<AudioEngine> makeEngine() override;
    /// Reports on the last engine.
    SourceReport report() override;

private:
    PulseConnection& connection_;
    const std::chrono::milliseconds firstRetry_;
    /// The name of the source that the last engine records; empty if none. Guarded by the
    /// connection's lock.
    std::shared_ptr<std::string> recorded_ = std::make_shared<std::string>();
};

}  // namespace chimewerk
