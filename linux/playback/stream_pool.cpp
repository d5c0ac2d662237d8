// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/playback/stream_pool.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace chimewerk {

namespace {

using namespace std::chrono_literals;

/// Streams that are kept while nothing plays: enough for a few simultaneous sounds without waiting
/// for the server.
constexpr std::size_t kQuietStreams = 3;
/// To lower the gains of many streams takes long, and a server allows only a few hundred streams
/// for all programs together.
constexpr std::size_t kMostStreams = 16;
/// The device plays in pieces of 2.5 ms, so that a sound starts soon. The long requests save
/// wake-ups: a sound is sent without being asked for.
constexpr PulseStream::Buffering kBuffering{.milliseconds = 45, .requestMilliseconds = 20};
constexpr std::size_t kMostWaiting = 64;
/// The level of the sounds that play outside the pool.
constexpr float kHalf = 0.5F;
constexpr auto kRefillInterval = 150ms;
/// If a voice starts later than this, the range is divided again: the voice overlaps with other
/// parts of the other voices than expected.
constexpr auto kPunctual = 10ms;
/// If a voice starts later than this, the device was stopped in the meantime.
constexpr auto kStandstill = 100ms;

}  // namespace

void StreamPool::fill(pa_context& context) {
    context_ = &context;
    const std::size_t wanted = std::clamp(waiting_.size(), kQuietStreams, kMostStreams);
    while (streams_.size() < wanted) {
        addStream();
    }
}

void StreamPool::clear() {
    streams_.clear();
    most_ = 0;
    context_ = nullptr;
}

bool StreamPool::start(Voice& voice) {
    if (context_ != nullptr) {
        const auto idle =
            std::ranges::find(streams_, PooledStream::State::idle, &PooledStream::state);
        if (idle != streams_.end()) {
            begin(*idle, std::move(voice));
            return true;
        }
        if (streams_.size() >= kMostStreams) {
            return false;
        }
        addStream();
    }
    keepWaiting(std::move(voice));
    return true;
}

void StreamPool::addStream() {
    PooledStream& stream = streams_.emplace_back();
    most_ = std::max(most_, streams_.size());
    stream.stream = std::make_unique<PulseStream>(
        connection_, *context_, kBuffering,
        PulseStream::Callbacks{.ready =
                                   [this, &stream] {
                                       stream.state = PooledStream::State::idle;
                                       takeWaiting(stream);
                                   },
                               .failed = [this, &stream] { onFailed(stream); },
                               .started = [this, &stream] { onStarted(stream); }});
}

void StreamPool::onFailed(PooledStream& stream) {
    streams_.remove_if([&](const PooledStream& candidate) { return &candidate == &stream; });
}

void StreamPool::begin(PooledStream& stream, Voice voice) {
    stream.state = PooledStream::State::playing;
    stream.voice = std::move(voice);
    stream.sound = {};
    stream.sound.begin(std::exchange(stream.voice.stereo, {}));
    stream.uncorked = BootClock::now();
    stream.started.reset();
    stream.heard = 0;
    share();
    stream.stream->uncork();
    if (stream.voice.sound) {
        parts_.decodeNext(stream.voice);
    } else {
        stream.stream->drain([this, &stream] { finish(stream); });
    }
    callbacks_.deadlineChanged();
}

void StreamPool::onStarted(PooledStream& stream) {
    const Time now = BootClock::now();
    if (stream.state != PooledStream::State::playing || stream.started ||
        deadlineOf(stream) <= now) {
        return;
    }
    const auto standstill = now - deviceTime(now);
    if (standstill > kStandstill) {
        for (PooledStream& each : streams_) {
            if (each.started) {
                *each.started += standstill;
            }
        }
    }
    stream.started = stream.progressed = moved_ = now;
    if (now - stream.uncorked > kPunctual) {
        share();
    }
}

void StreamPool::finish(PooledStream& stream) {
    moved_ = BootClock::now();
    stream.refill = nullptr;
    stream.stream->cork();
    stream.state = PooledStream::State::idle;
    stream.voice = {};
    stream.sound = {};
    takeWaiting(stream);
}

bool StreamPool::deliver(std::uint64_t voice, std::span<float> stereo, bool last) {
    const auto found = std::ranges::find(
        streams_, voice, [](const PooledStream& stream) { return stream.voice.id; });
    if (found == streams_.end()) {
        return false;
    }
    PooledStream& stream = *found;
    const Time now = BootClock::now();
    if (deadlineOf(stream) <= now) {
        return true;
    }
    stream.voice.decoding = false;
    stream.progressed = now;
    const std::int64_t position = positionOf(stream, deviceTime(now));
    if (stream.started && position == stream.sound.sent()) {
        // The stream ran dry while the part was decoded.
        stream.started = now - lengthOf(position);
    }
    stream.sound.forgetBefore(position);
    stream.sound.append(stereo);
    share();
    if (last) {
        stream.voice.sound = nullptr;
        stream.stream->drain([this, &stream] { finish(stream); });
    } else {
        refill(stream);
    }
    callbacks_.deadlineChanged();
    return true;
}

/// Decodes more if little is waiting at the server; otherwise checks again later.
void StreamPool::refill(PooledStream& stream) {
    stream.stream->askQueued([this, &stream](std::optional<PulseStream::Queued> queued) {
        onQueued(stream, queued.value_or(PulseStream::Queued{}));
    });
}

void StreamPool::onQueued(PooledStream& stream, const PulseStream::Queued& queued) {
    const Time now = BootClock::now();
    if (deadlineOf(stream) <= now) {
        return;
    }
    const std::int64_t heard = stream.sound.sent() - queued.frames;
    if (stream.started && heard > stream.heard) {
        stream.heard = heard;
        stream.started = now - queued.age - lengthOf(heard);
        stream.progressed = moved_ = now;
    }
    if (queued.frames < VoiceParts::kAheadFrames) {
        stream.progressed = now;
        parts_.decodeNext(stream.voice);
    } else {
        stream.refill = connection_.after(kRefillInterval, [this, &stream] { refill(stream); });
    }
}

void StreamPool::keepWaiting(Voice voice) {
    if (waiting_.size() == kMostWaiting) {
        dropOldest(waiting_);
    }
    waiting_.push_back(std::move(voice));
    callbacks_.deadlineChanged();
}

/// Plays the voice that has waited longest. Drops voices that have waited too long.
void StreamPool::takeWaiting(PooledStream& stream) {
    while (!waiting_.empty() && stream.state == PooledStream::State::idle) {
        Voice voice = std::move(waiting_.front());
        waiting_.pop_front();
        if (BootClock::now() - voice.asked < kPatience) {
            begin(stream, std::move(voice));
        }
    }
    if (stream.state == PooledStream::State::idle) {
        callbacks_.quiet();
    }
}

/// Divides the range among the voices that play, from now on.
void StreamPool::share() {
    const Time now = BootClock::now();
    const Time atDevice = deviceTime(now);
    std::vector<PooledStream*> playing;
    for (PooledStream& stream : streams_) {
        if (stream.state == PooledStream::State::playing) {
            playing.push_back(&stream);
        }
    }
    std::ranges::sort(playing, {}, [](const PooledStream* stream) { return stream->voice.id; });
    std::vector<std::span<const float>> levels;
    levels.reserve(playing.size() + 1);
    for (const PooledStream* const stream : playing) {
        levels.push_back(stream->sound.levelsFrom(positionOf(*stream, atDevice)));
    }
    const std::vector<float> half(static_cast<std::size_t>(callbacks_.framesBeside()) / kLevelBlock,
                                  kHalf);
    levels.emplace_back(half);
    const auto gains = shareRange(levels);
    for (std::size_t i = 0; i < playing.size(); ++i) {
        PooledStream& stream = *playing[i];
        const auto change = stream.sound.send(positionOf(stream, atDevice), gains[i]);
        if (!change.stereo.empty()) {
            stream.stream->write(change.stereo, change.rewind);
        }
    }
}

/// Returns the last time at which the device is known to have played. If a stream was uncorked and
/// has not started since, the device may have stopped, for all streams.
StreamPool::Time StreamPool::deviceTime(Time now) const {
    Time first = now;
    for (const PooledStream& stream : streams_) {
        if (stream.state == PooledStream::State::playing && !stream.started) {
            first = std::min(first, stream.uncorked);
        }
    }
    return std::max(first, moved_);
}

std::int64_t StreamPool::positionOf(const PooledStream& stream, Time deviceTime) {
    if (!stream.started) {
        return 0;
    }
    const auto played = std::chrono::floor<Frames>(deviceTime - *stream.started).count();
    return std::clamp<std::int64_t>(played, 0, stream.sound.sent());
}

StreamPool::Time StreamPool::deadlineOf(const PooledStream& stream) {
    if (!stream.started) {
        return stream.voice.asked + kPatience;
    }
    if (stream.voice.sound && !stream.voice.decoding) {
        return stream.progressed + kPatience + kRefillInterval;
    }
    return *stream.started + lengthOf(stream.sound.sent()) + kPatience;
}

std::optional<StreamPool::Time> StreamPool::deadline() const {
    std::optional<Time> first;
    if (!waiting_.empty()) {
        first = waiting_.front().asked + kPatience;
    }
    for (const PooledStream& stream : streams_) {
        if (stream.state == PooledStream::State::playing) {
            first = std::min(first.value_or(Time::max()), deadlineOf(stream));
        }
    }
    return first;
}

void StreamPool::endOverdue(Time now) {
    std::erase_if(waiting_, [&](const Voice& voice) { return voice.asked + kPatience <= now; });
    // The streams are not reused, because the server may still hold frames of the voices.
    const auto ended = streams_.remove_if([&](const PooledStream& stream) {
        return stream.state == PooledStream::State::playing && deadlineOf(stream) <= now;
    });
    if (ended > 0 && context_ != nullptr) {
        fill(*context_);
        callbacks_.quiet();
    }
}

bool StreamPool::isQuiet() const {
    return std::ranges::all_of(streams_, [](const PooledStream& stream) {
        return stream.state == PooledStream::State::idle;
    });
}

bool StreamPool::isLarge() const {
    return most_ > kQuietStreams;
}

void StreamPool::shrink() {
    if (streams_.size() > kQuietStreams) {
        streams_.resize(kQuietStreams);
    }
    most_ = streams_.size();
}

}  // namespace chimewerk
