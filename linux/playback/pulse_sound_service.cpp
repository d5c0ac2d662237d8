// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/pulse_sound_service.h"

#include <utility>

namespace chimewerk {

namespace {

class PulseSound final : public Sound {
public:
    PulseSound(PulsePlayer& player, std::shared_ptr<SoundFile> file)
        : player_(player), file_(std::move(file)), duration_(file_->seconds()) {}

    void setVolume(float volume) override { volume_ = volume; }
    void play() override {
        if (file_) {
            player_.play(std::move(file_), volume_);
        }
    }
    Seconds duration() const override { return duration_; }

private:
    PulsePlayer& player_;
    std::shared_ptr<SoundFile> file_;  // The player's from `play()` on.
    const Seconds duration_;
    float volume_ = 1.0F;
};

}  // namespace

PulseSoundService::PulseSoundService(const Decoders& decoders, PulsePlayer& player,
                                     std::string alertFolder)
    : decoders_(decoders), player_(player), alertFolder_(std::move(alertFolder)) {}

std::shared_ptr<Sound> PulseSoundService::soundFromFile(const std::string& path) {
    std::shared_ptr<SoundFile> file = SoundFile::open(decoders_, path);
    return file ? std::make_shared<PulseSound>(player_, std::move(file)) : nullptr;
}

std::shared_ptr<Sound> PulseSoundService::soundNamed(std::string_view name) {
    if (name.empty() || name.find('/') != std::string_view::npos) {
        return nullptr;
    }
    return soundFromFile(alertFolder_ + "/" + std::string(name) + ".wav");
}

}  // namespace chimewerk
