// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/overflow_stream.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace chimewerk {

namespace {

/// Longer than a pooled stream's latency: the connection's thread mixes in step with the server,
/// and may have to wait for processor time.
constexpr PulseStream::Buffering kBuffering{.milliseconds = 60, .requestMilliseconds = 15};
constexpr std::int64_t kBufferedFrames = std::int64_t{kBuffering.milliseconds} * kOutputRate / 1000;

}  // namespace

void OverflowStream::start(pa_context& context, Voice voice) {
    mixer_.add(voice.id, std::exchange(voice.stereo, {}), voice.sound == nullptr);
    if (voice.sound) {
        parts_.decodeNext(voice);
        unfinished_.push_back(std::move(voice));
    }
    if (!stream_) {
        connect(context);
    } else if (state_ == State::idle || state_ == State::draining) {
        feed();
    }
}

void OverflowStream::connect(pa_context& context) {
    state_ = State::connecting;
    progressed_ = BootClock::now();
    stream_ = std::make_unique<PulseStream>(
        connection_, context, kBuffering,
        PulseStream::Callbacks{.ready =
                                   [this] {
                                       if (!isOverdue()) {
                                           feed();
                                       }
                                   },
                               .failed = [this] { clear(); },
                               .wanted = [this](std::size_t frames) { onWanted(frames); }});
}

void OverflowStream::onWanted(std::size_t frames) {
    if (state_ == State::feeding && !isOverdue()) {
        mix(frames);
    }
}

void OverflowStream::feed() {
    state_ = State::feeding;
    mix(stream_->wantedFrames());
    stream_->uncork();
}

void OverflowStream::mix(std::size_t frames) {
    progressed_ = BootClock::now();
    if (mixer_.empty()) {
        drain();
        return;
    }
    if (frames > 0) {
        mixed_.resize(frames * kOutputChannels);
        mixer_.mix(mixed_);
        stream_->write(mixed_);
    }
    for (Voice& voice : unfinished_) {
        if (!voice.decoding &&
            mixer_.framesLeft(voice.id) < std::size_t{VoiceParts::kAheadFrames}) {
            parts_.decodeNext(voice);
        }
    }
}

void OverflowStream::drain() {
    state_ = State::draining;
    stream_->drain([this] {
        state_ = State::idle;
        stream_->cork();
        quiet_();
    });
}

void OverflowStream::deliver(std::uint64_t voice, std::span<float> stereo, bool last) {
    const auto found = std::ranges::find(unfinished_, voice, &Voice::id);
    if (found == unfinished_.end()) {
        return;
    }
    found->decoding = false;
    mixer_.append(voice, stereo, last);
    if (last) {
        unfinished_.erase(found);
    }
}

std::int64_t OverflowStream::framesLeft() const {
    const bool busy = stream_ != nullptr && state_ != State::idle;
    return busy ? kBufferedFrames + static_cast<std::int64_t>(mixer_.mostFramesLeft()) : 0;
}

std::optional<BootClock::time_point> OverflowStream::deadline() const {
    const bool busy = stream_ != nullptr && state_ != State::idle;
    return busy ? std::optional(progressed_ + kPatience) : std::nullopt;
}

void OverflowStream::endOverdue() {
    if (isOverdue()) {
        clear();
        quiet_();
    }
}

bool OverflowStream::isOverdue() const {
    const auto due = deadline();
    return due && *due <= BootClock::now();
}

void OverflowStream::clear() {
    stream_ = nullptr;
    state_ = State::connecting;
    mixer_.clear();
    unfinished_.clear();
}

}  // namespace chimewerk
