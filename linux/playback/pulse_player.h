// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "linux/audio/pulse_connection.h"
#include "linux/decoding/sound_file.h"
#include "linux/playback/overflow_stream.h"
#include "linux/playback/stream_pool.h"
#include "linux/playback/voice_parts.h"

namespace chimewerk {

/// Plays sounds on the audio server: through a pool of streams, and those beyond the pool through
/// one stream that mixes them. A sound that is a second late ends: there was no server, or the
/// device, the program or the machine had stopped. What a burst of sounds needed is freed after a
/// quiet time.
///
/// Call `play()` on the main thread; everything else runs under the connection's lock, mostly on
/// its thread.
class PulsePlayer final : public PulseClient {
public:
    /// The connection must outlive the player. `quietBeforeShrinking` is the quiet time before
    /// memory is freed.
    explicit PulsePlayer(
        PulseConnection& connection,
        std::chrono::milliseconds quietBeforeShrinking = std::chrono::milliseconds(4000));
    PulsePlayer(const PulsePlayer&) = delete;
    PulsePlayer& operator=(const PulsePlayer&) = delete;
    ~PulsePlayer() override;

    /// Starts the sound and returns at once. `volume` is 0 to 1. Without a server or a device the
    /// sound waits for one, for up to a second.
    void play(std::shared_ptr<SoundFile> sound, float volume);

    void onServerFound(pa_context& context) override;
    void onServerLost() override;

private:
    void onQuiet();
    void watchDeadline();
    void endOverdue();
    void shrink();

    PulseConnection& connection_;
    const std::chrono::milliseconds quietBeforeShrinking_;
    // Guarded by the connection's lock:
    pa_context* context_ = nullptr;
    StreamPool pool_;
    OverflowStream overflow_;
    std::unique_ptr<PulseConnection::Alarm> shrinking_;
    std::unique_ptr<PulseConnection::Timer> overdue_;  // Set while something plays or waits.
    std::uint64_t lastVoice_ = 0;

    VoiceParts parts_;  // Declared last, so that its worker ends first.
};

}  // namespace chimewerk
