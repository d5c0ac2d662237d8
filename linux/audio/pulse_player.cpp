// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/pulse_player.h"

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace chimewerk {

namespace {

/// After a burst that took more streams than this, the memory shared with the server is freed too.
constexpr std::size_t kLargeBurst = 8;

}  // namespace

PulsePlayer::PulsePlayer(PulseConnection& connection,
                         std::chrono::milliseconds quietBeforeShrinking)
    : connection_(connection),
      quietBeforeShrinking_(quietBeforeShrinking),
      pool_(connection, parts_, [this] { shrinkLater(); }),
      overflow_(connection, parts_, [this] { shrinkLater(); }),
      parts_(connection, [this](std::uint64_t voice, std::span<float> stereo, bool last) {
          if (!pool_.deliver(voice, stereo, last)) {
              overflow_.deliver(voice, stereo, last);
          }
      }) {
    connection_.add(*this);
}

PulsePlayer::~PulsePlayer() {
    connection_.remove(*this);
}

void PulsePlayer::play(std::shared_ptr<SoundFile> sound, float volume) {
    Voice voice;
    voice.stereo = sound->head();
    voice.volume = std::isfinite(volume) ? std::clamp(volume, 0.0F, 1.0F) : 0.0F;
    scale(voice.stereo, voice.volume);
    if (!sound->headIsAll()) {
        voice.sound = std::move(sound);
    }
    voice.asked = std::chrono::steady_clock::now();

    const PulseConnection::Lock lock(connection_);
    voice.id = ++lastVoice_;
    if (context_ == nullptr) {
        connection_.connectNow();
    }
    if (!pool_.start(voice)) {
        overflow_.start(*context_, std::move(voice));
    }
}

void PulsePlayer::onServerFound(pa_context& context) {
    context_ = &context;
    pool_.fill(context);
}

void PulsePlayer::onServerLost() {
    shrinking_ = nullptr;
    pool_.clear();
    overflow_.clear();
    context_ = nullptr;
}

void PulsePlayer::shrinkLater() {
    if (pool_.isLarge() || overflow_.exists()) {
        shrinking_ = connection_.after(quietBeforeShrinking_, [this] { shrink(); });
    }
}

/// Frees what a burst of sounds needed, unless sounds are playing: then the end of the last one
/// schedules another call.
void PulsePlayer::shrink() {
    if (!pool_.isQuiet() || !overflow_.isQuiet()) {
        return;
    }
    if (pool_.size() > kLargeBurst) {
        connection_.reconnect();
    } else {
        pool_.shrink();
        overflow_.clear();
    }
    malloc_trim(0);
}

}  // namespace chimewerk
