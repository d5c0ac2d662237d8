// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/voice_parts.h"

#include <stop_token>
#include <vector>

namespace chimewerk {

namespace {

constexpr std::size_t kPartFrames = kOutputRate / 4;

}  // namespace

void VoiceParts::decodeNext(Voice& voice) {
    voice.decoding = true;
    worker_.post([this, id = voice.id, sound = voice.sound,
                  volume = voice.volume](const std::stop_token& stop) {
        std::vector<float> stereo(kPartFrames * kOutputChannels);
        const std::size_t frames = sound->readRest(stereo);
        stereo.resize(frames * kOutputChannels);
        scale(stereo, volume);
        if (!stop.stop_requested()) {
            const PulseConnection::Lock lock(connection_);
            deliver_(id, stereo, frames < kPartFrames);
        }
    });
}

void scale(std::span<float> samples, float volume) {
    for (float& sample : samples) {
        sample *= volume;
    }
}

}  // namespace chimewerk
