// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/audio/stream_pool.h"

#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

using namespace std::chrono_literals;

/// Streams that are kept while nothing plays: enough for a few simultaneous sounds without waiting
/// for the server.
constexpr std::size_t kQuietStreams = 3;
/// A server allows a few hundred streams for all programs together.
constexpr std::size_t kMostStreams = 24;
constexpr unsigned kLatencyMilliseconds = 10;
/// How long a voice waits for a stream.
constexpr auto kPatience = 1s;
constexpr std::size_t kMostWaiting = 64;
/// A voice that has not finished this long after its expected end never will: the device has
/// stopped. Its stream is then reused.
constexpr auto kOverdue = 2s;
constexpr auto kRefillInterval = 300ms;

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
    context_ = nullptr;
}

bool StreamPool::start(Voice& voice) {
    if (context_ != nullptr) {
        reclaimOverdue();
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
    stream.stream = std::make_unique<PulseStream>(
        connection_, *context_, kLatencyMilliseconds,
        PulseStream::Callbacks{.ready =
                                   [this, &stream] {
                                       stream.state = PooledStream::State::idle;
                                       takeWaiting(stream);
                                   },
                               .failed = [this, &stream] { onFailed(stream); }});
}

void StreamPool::onFailed(PooledStream& stream) {
    streams_.remove_if([&](const PooledStream& candidate) { return &candidate == &stream; });
}

void StreamPool::begin(PooledStream& stream, Voice voice) {
    stream.state = PooledStream::State::playing;
    stream.voice = std::move(voice);
    Voice& playing = stream.voice;
    const auto length = std::chrono::duration<double>(static_cast<double>(playing.stereo.size()) /
                                                      (kOutputChannels * kOutputRate));
    stream.heardBy = Clock::now() + std::chrono::ceil<Clock::duration>(length);
    VoiceParts::place(playing, 0);
    parts_.fit(playing, playing.stereo);
    stream.stream->write(playing.stereo);
    stream.stream->uncork();
    playing.stereo = {};
    if (playing.sound) {
        parts_.decodeNext(playing);
    } else {
        stream.stream->drain([this, &stream] { finish(stream); });
    }
}

void StreamPool::finish(PooledStream& stream) {
    stream.refill = nullptr;
    stream.stream->corkAndFlush();
    stream.state = PooledStream::State::idle;
    stream.voice = {};
    takeWaiting(stream);
}

bool StreamPool::deliver(std::uint64_t voice, std::span<float> stereo, bool last) {
    const auto found = std::ranges::find(
        streams_, voice, [](const PooledStream& stream) { return stream.voice.id; });
    if (found == streams_.end()) {
        return false;
    }
    PooledStream& stream = *found;
    stream.voice.decoding = false;
    parts_.fit(stream.voice, stereo);
    stream.stream->write(stereo);
    stream.heardBy = Clock::now() + 2 * VoiceParts::kAhead;
    if (last) {
        stream.stream->drain([this, &stream] { finish(stream); });
    } else {
        refill(stream);
    }
    return true;
}

/// Decodes more if little is waiting at the server; otherwise checks again later.
void StreamPool::refill(PooledStream& stream) {
    stream.stream->askQueued([this, &stream](std::optional<std::int64_t> frames) {
        if (frames.value_or(0) < VoiceParts::kAheadFrames) {
            parts_.decodeNext(stream.voice);
        } else {
            stream.heardBy = Clock::now() + 2 * VoiceParts::kAhead;
            stream.refill = connection_.after(kRefillInterval, [this, &stream] { refill(stream); });
        }
    });
}

void StreamPool::keepWaiting(Voice voice) {
    if (waiting_.size() == kMostWaiting) {
        waiting_.pop_front();
    }
    waiting_.push_back(std::move(voice));
}

/// Plays the voice that has waited longest. Drops voices that have waited too long.
void StreamPool::takeWaiting(PooledStream& stream) {
    while (!waiting_.empty() && stream.state == PooledStream::State::idle) {
        Voice voice = std::move(waiting_.front());
        waiting_.pop_front();
        if (Clock::now() - voice.asked < kPatience) {
            begin(stream, std::move(voice));
        }
    }
    if (stream.state == PooledStream::State::idle) {
        quiet_();
    }
}

void StreamPool::reclaimOverdue() {
    const auto now = Clock::now();
    for (PooledStream& stream : streams_) {
        if (stream.state == PooledStream::State::playing && now > stream.heardBy + kOverdue) {
            finish(stream);
        }
    }
}

bool StreamPool::isQuiet() const {
    return std::ranges::all_of(streams_, [](const PooledStream& stream) {
        return stream.state == PooledStream::State::idle;
    });
}

bool StreamPool::isLarge() const {
    return streams_.size() > kQuietStreams;
}

void StreamPool::shrink() {
    if (isLarge()) {
        streams_.resize(kQuietStreams);
    }
}

}  // namespace chimewerk
