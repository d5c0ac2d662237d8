// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "linux/audio/pulse_connection.h"
#include "linux/base/worker.h"
#include "linux/decoding/pcm_reader.h"
#include "linux/playback/voice.h"

namespace chimewerk {

/// Decodes the parts of long sounds after the first one, on a worker. Used under the connection's
/// lock; destroyed without it, because the destructor waits for the worker.
class VoiceParts {
public:
    /// The next part is decoded when fewer frames than this wait to be played.
    static constexpr std::int64_t kAheadFrames = kOutputRate / 2;

    /// Receives the part that `decodeNext()` requested; `last` if no more parts follow. Lock held.
    using Deliver = std::function<void(std::uint64_t voice, std::span<float> stereo, bool last)>;

    VoiceParts(PulseConnection& connection, Deliver deliver)
        : connection_(connection), deliver_(std::move(deliver)) {}

    /// Starts decoding the voice's next part, which is then delivered.
    void decodeNext(Voice& voice);

private:
    PulseConnection& connection_;
    const Deliver deliver_;
    Worker worker_;  // Last, so that it ends first.
};

/// Multiplies every sample by `volume`.
void scale(std::span<float> samples, float volume);

}  // namespace chimewerk
