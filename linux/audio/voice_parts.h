// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "linux/audio/headroom.h"
#include "linux/audio/pulse_connection.h"
#include "linux/audio/voice.h"
#include "linux/base/worker.h"
#include "linux/decoding/pcm_reader.h"

namespace chimewerk {

/// Prepares the parts of sounds for the server: fits their levels to one another, and decodes the
/// parts after the first one on a worker. Used under the connection's lock; destroyed without it,
/// because the destructor waits for the worker.
class VoiceParts {
public:
    /// Long sounds are passed to the server in parts of half a second, up to about this far ahead.
    static constexpr std::int64_t kAheadFrames = kOutputRate;
    static constexpr std::chrono::seconds kAhead{1};

    /// Receives the part that `decodeNext()` requested; `last` if no more parts follow. Lock held.
    using Deliver = std::function<void(std::uint64_t voice, std::span<float> stereo, bool last)>;

    VoiceParts(PulseConnection& connection, Deliver deliver)
        : connection_(connection), deliver_(std::move(deliver)) {}

    /// Sets the start of the voice: `delayFrames` from now.
    static void place(Voice& voice, std::int64_t delayFrames);
    /// Scales the voice's next part so that the sum of all voices stays in range.
    void fit(Voice& voice, std::span<float> stereo);
    /// Starts decoding the voice's next part, which is then delivered.
    void decodeNext(Voice& voice);

private:
    PulseConnection& connection_;
    const Deliver deliver_;
    Headroom headroom_;
    Worker worker_;  // Declared last, so that it ends first.
};

/// Multiplies every sample by `volume`.
void scale(std::span<float> samples, float volume);

}  // namespace chimewerk
