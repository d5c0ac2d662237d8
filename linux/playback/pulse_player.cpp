// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/pulse_player.h"

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
      pool_(connection, parts_,
            {.quiet = [this] { onQuiet(); },
             .deadlineChanged = [this] { watchDeadline(); },
             .framesBeside = [this] { return overflow_.framesLeft(); }}),
      overflow_(connection, parts_, [this] { onQuiet(); }),
      parts_(connection, [this](std::uint64_t voice, std::span<float> stereo, bool last) {
          if (!pool_.deliver(voice, stereo, last)) {
              overflow_.deliver(voice, stereo, last);
          }
      }) {
    {
        const PulseConnection::Lock lock(connection_);
        overdue_ = connection_.makeTimer([this] { endOverdue(); });
    }
    connection_.add(*this);
}

PulsePlayer::~PulsePlayer() {
    connection_.remove(*this);
    const PulseConnection::Lock lock(connection_);
    overdue_ = nullptr;
}

void PulsePlayer::play(std::shared_ptr<SoundFile> sound, float volume) {
    Voice voice;
    voice.stereo = sound->head();
    voice.volume = std::isfinite(volume) ? std::clamp(volume, 0.0F, 1.0F) : 0.0F;
    scale(voice.stereo, voice.volume);
    if (!sound->headIsAll()) {
        voice.sound = std::move(sound);
    }
    voice.asked = BootClock::now();

    const PulseConnection::Lock lock(connection_);
    voice.id = ++lastVoice_;
    if (context_ == nullptr) {
        connection_.connectNow();
    }
    if (!pool_.start(voice)) {
        overflow_.start(*context_, std::move(voice));
        pool_.share();
        watchDeadline();
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

void PulsePlayer::onQuiet() {
    watchDeadline();
    if (pool_.isLarge() || overflow_.exists()) {
        shrinking_ = connection_.after(quietBeforeShrinking_, [this] { shrink(); });
    }
}

/// Sets the timer to the first deadline.
void PulsePlayer::watchDeadline() {
    auto first = pool_.deadline();
    if (const auto other = overflow_.deadline(); other && (!first || *other < *first)) {
        first = other;
    }
    overdue_->set(first);
}

void PulsePlayer::endOverdue() {
    pool_.endOverdue(BootClock::now());
    overflow_.endOverdue();
    watchDeadline();
}

/// Frees what a burst of sounds needed, unless sounds are playing: then the end of the last one
/// schedules another call.
void PulsePlayer::shrink() {
    if (!pool_.isQuiet() || !overflow_.isQuiet()) {
        return;
    }
    if (pool_.mostStreams() > kLargeBurst) {
        connection_.reconnect();
    } else {
        pool_.shrink();
        overflow_.clear();
    }
    malloc_trim(0);
}

}  // namespace chimewerk
