// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "linux/decoding/decoder.h"
#include "linux/playback/pulse_player.h"
#include "platform/sound_service.h"

namespace chimewerk {

/// Sounds from files and from a folder of alert sounds, played through PulseAudio or PipeWire.
class PulseSoundService final : public SoundService {
public:
    /// The alert sound "Tink" is the file Tink.wav in `alertFolder`. `decoders` and `player` must
    /// outlive the service and its sounds.
    PulseSoundService(const Decoders& decoders, PulsePlayer& player, std::string alertFolder);

    std::shared_ptr<Sound> soundFromFile(const std::string& path) override;
    std::shared_ptr<Sound> soundNamed(std::string_view name) override;

private:
    const Decoders& decoders_;
    PulsePlayer& player_;
    const std::string alertFolder_;
};

}  // namespace chimewerk
