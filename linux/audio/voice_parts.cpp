// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/voice_parts.h"

#include <ratio>
#include <stop_token>
#include <vector>

namespace chimewerk {

namespace {

constexpr std::size_t kPartFrames = kOutputRate / 2;
/// A sound of many seconds leaves this share of the range to the others.
constexpr float kLongSoundCeiling = 0.75F;

}  // namespace

void VoiceParts::place(Voice& voice, std::int64_t delayFrames) {
    using Frames = std::chrono::duration<std::int64_t, std::ratio<1, kOutputRate>>;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    voice.nextFrame = std::chrono::floor<Frames>(now).count() + delayFrames;
}

void VoiceParts::fit(Voice& voice, std::span<float> stereo) {
    headroom_.fit(stereo, voice.nextFrame, voice.sound ? kLongSoundCeiling : 1.0F);
    voice.nextFrame += static_cast<std::int64_t>(stereo.size()) / kOutputChannels;
}

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
