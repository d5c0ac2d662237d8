#include "linux/audio/pulse_player.h"

#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "linux/decoding/pcm_reader.h"

namespace chimewerk {

namespace {

using namespace std::chrono_literals;

/// Streams that are held ready while it is quiet: enough for a few sounds at once without waiting for the
/// server.
constexpr std::size_t kQuietLanes = 3;
/// Streams at the most. A server allows a few hundred, for all programs together.
constexpr std::size_t kMostLanes = 24;
/// After a burst that took more streams than this the memory shared with the server is given back too.
constexpr std::size_t kLargeBurst = 8;
constexpr unsigned kLatencyMilliseconds = 10;
/// The overflow is mixed in time with the server, from a thread that may have to wait for its turn.
constexpr unsigned kOverflowLatencyMilliseconds = 60;
/// How long a sound waits for a server.
constexpr auto kPatience = 1s;
constexpr std::size_t kMostWaiting = 64;
/// A sound that has not been heard to its end this long after it should have been is not going to be: the
/// device has been stopped. Its stream is wanted for others.
constexpr auto kOverdue = 2s;
constexpr auto kQuietBeforeShrinking = 4s;
/// Long sounds are handed over in parts, and so much ahead of what is heard.
constexpr std::size_t kPartFrames = kOutputRate / 2;
constexpr std::int64_t kAheadFrames = kOutputRate;
constexpr auto kRefillInterval = 300ms;
/// A sound of many seconds leaves room for the others, which would find no place beside it.
constexpr float kLongSoundCeiling = 0.75F;

std::int64_t framesNow() {
    using Frames = std::chrono::duration<std::int64_t, std::ratio<1, kOutputRate>>;
    return std::chrono::floor<Frames>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void scale(std::span<float> samples, float volume) {
    for (float& sample : samples) {
        sample *= volume;
    }
}

}  // namespace

PulsePlayer::PulsePlayer(PulseConnection& connection) : connection_(connection) {
    connection_.add(*this);
}

PulsePlayer::~PulsePlayer() {
    connection_.remove(*this);
    const PulseConnection::Lock lock(connection_);
    serverLost();
}

void PulsePlayer::play(std::shared_ptr<SoundFile> sound, float volume) {
    Voice voice;
    voice.stereo = sound->head();
    voice.volume = std::isfinite(volume) ? std::clamp(volume, 0.0F, 1.0F) : 0.0F;
    scale(voice.stereo, voice.volume);
    if (!sound->headIsAll()) {
        voice.sound = std::move(sound);
    }
    voice.asked = Clock::now();

    const PulseConnection::Lock lock(connection_);
    voice.id = ++lastId_;
    start(std::move(voice));
}

void PulsePlayer::serverFound(pa_context& context) {
    context_ = &context;
    const std::size_t wanted = std::clamp(waiting_.size(), kQuietLanes, kMostLanes);
    while (lanes_.size() < wanted) {
        addLane();
    }
}

void PulsePlayer::serverLost() {
    shrinking_ = nullptr;
    lanes_.clear();
    overflowLost();
    context_ = nullptr;
}

/// Gives the sound a stream if one is free, else asks for one more, else mixes it with the overflow.
void PulsePlayer::start(Voice voice) {
    if (context_ == nullptr) {
        connection_.connectNow();
    } else {
        reclaimOverdue();
        const auto idle = std::find_if(lanes_.begin(), lanes_.end(), [](const Lane& lane) {
            return lane.state == Lane::State::idle;
        });
        if (idle != lanes_.end()) {
            begin(*idle, std::move(voice));
            return;
        }
        if (lanes_.size() >= kMostLanes) {
            startOverflow(std::move(voice));
            return;
        }
        addLane();
    }
    if (waiting_.size() == kMostWaiting) {
        waiting_.pop_front();
    }
    waiting_.push_back(std::move(voice));
}

void PulsePlayer::addLane() {
    Lane& lane = lanes_.emplace_back();
    lane.stream = std::make_unique<PulseStream>(
        *context_, kLatencyMilliseconds,
        PulseStream::Callbacks{.ready = [this, &lane] { laneReady(lane); },
                               .failed = [this, &lane] { laneFailed(lane); }});
}

void PulsePlayer::laneReady(Lane& lane) {
    lane.state = Lane::State::idle;
    takeWaiting(lane);
}

void PulsePlayer::laneFailed(Lane& lane) {
    lanes_.remove_if([&lane](const Lane& candidate) { return &candidate == &lane; });
}

/// Hands the lane the sound that has waited longest, if it is not too late for it.
void PulsePlayer::takeWaiting(Lane& lane) {
    while (!waiting_.empty() && lane.state == Lane::State::idle) {
        Voice voice = std::move(waiting_.front());
        waiting_.pop_front();
        if (Clock::now() - voice.asked < kPatience) {
            begin(lane, std::move(voice));
        }
    }
    if (lane.state == Lane::State::idle) {
        shrinkLater();
    }
}

void PulsePlayer::begin(Lane& lane, Voice voice) {
    lane.state = Lane::State::playing;
    lane.voice = std::move(voice);
    const auto length = std::chrono::duration<double>(
        static_cast<double>(lane.voice.stereo.size()) / (kOutputChannels * kOutputRate));
    lane.heardBy = Clock::now() + std::chrono::ceil<Clock::duration>(length);
    lane.voice.nextFrame = framesNow();
    fit(lane.voice, lane.voice.stereo);
    lane.stream->write(lane.voice.stereo);
    lane.stream->uncork();
    lane.voice.stereo = {};
    if (lane.voice.sound) {
        decodeNext(lane.voice);
    } else {
        lane.stream->drain([this, &lane] { finish(lane); });
    }
}

void PulsePlayer::finish(Lane& lane) {
    lane.refill = nullptr;
    lane.stream->corkAndFlush();
    lane.state = Lane::State::idle;
    lane.voice = {};
    takeWaiting(lane);
}

void PulsePlayer::reclaimOverdue() {
    const auto now = Clock::now();
    for (Lane& lane : lanes_) {
        if (lane.state == Lane::State::playing && now > lane.heardBy + kOverdue) {
            finish(lane);
        }
    }
}

void PulsePlayer::shrinkLater() {
    if (lanes_.size() <= kQuietLanes && !overflowStream_) {
        return;
    }
    shrinking_ =
        connection_.after(std::chrono::milliseconds(kQuietBeforeShrinking), [this] { shrink(); });
}

/// Gives back what a burst of sounds has needed, once it is over.
void PulsePlayer::shrink() {
    const bool quiet =
        overflowState_ != OverflowState::feeding && overflowState_ != OverflowState::draining &&
        std::all_of(lanes_.begin(), lanes_.end(),
                    [](const Lane& lane) { return lane.state == Lane::State::idle; });
    if (!quiet) {
        return;  // The end of the last sound calls again.
    }
    if (lanes_.size() > kLargeBurst) {
        connection_.reconnect();
    } else if (lanes_.size() > kQuietLanes) {
        lanes_.resize(kQuietLanes);
    }
    malloc_trim(0);
}

void PulsePlayer::startOverflow(Voice voice) {
    constexpr std::int64_t kLatencyFrames =
        std::int64_t{kOverflowLatencyMilliseconds} * kOutputRate / 1000;
    voice.nextFrame = framesNow() + kLatencyFrames / 2;
    fit(voice, voice.stereo);
    overflow_.add(voice.id, std::exchange(voice.stereo, {}), voice.sound == nullptr);
    if (voice.sound) {
        decodeNext(voice);
        overflowRests_.push_back(std::move(voice));
    }
    if (!overflowStream_) {
        addOverflowStream();
    } else if (overflowState_ == OverflowState::idle || overflowState_ == OverflowState::draining) {
        runOverflow();
    }
}

void PulsePlayer::addOverflowStream() {
    overflowState_ = OverflowState::connecting;
    overflowStream_ = std::make_unique<PulseStream>(
        *context_, kOverflowLatencyMilliseconds,
        PulseStream::Callbacks{.ready = [this] { runOverflow(); },
                               .failed = [this] { overflowLost(); },
                               .wanted =
                                   [this](std::size_t frames) {
                                       if (overflowState_ == OverflowState::feeding) {
                                           mixOverflow(frames);
                                       }
                                   }});
}

void PulsePlayer::runOverflow() {
    overflowState_ = OverflowState::feeding;
    mixOverflow(overflowStream_->wantedFrames());
    overflowStream_->uncork();
}

void PulsePlayer::mixOverflow(std::size_t frames) {
    if (overflow_.empty()) {
        overflowState_ = OverflowState::draining;
        overflowStream_->drain([this] {
            overflowState_ = OverflowState::idle;
            overflowStream_->corkAndFlush();
            shrinkLater();
        });
        return;
    }
    if (frames > 0) {
        mixed_.resize(frames * kOutputChannels);
        overflow_.mix(mixed_);
        overflowStream_->write(mixed_);
    }
    for (Voice& voice : overflowRests_) {
        if (!voice.decoding && overflow_.framesLeft(voice.id) < std::size_t{kAheadFrames}) {
            decodeNext(voice);
        }
    }
}

void PulsePlayer::overflowLost() {
    overflowStream_ = nullptr;
    overflowState_ = OverflowState::connecting;
    overflow_.clear();
    overflowRests_.clear();
}

void PulsePlayer::fit(Voice& voice, std::span<float> stereo) {
    headroom_.fit(stereo, voice.nextFrame, voice.sound ? kLongSoundCeiling : 1.0F);
    voice.nextFrame += static_cast<std::int64_t>(stereo.size()) / kOutputChannels;
}

/// Has the next part of a long sound decoded and delivered.
void PulsePlayer::decodeNext(Voice& voice) {
    voice.decoding = true;
    decoding_.post([this, id = voice.id, sound = voice.sound,
                    volume = voice.volume](const std::stop_token& stop) {
        std::vector<float> stereo(kPartFrames * kOutputChannels);
        const std::size_t frames = sound->readRest(stereo);
        stereo.resize(frames * kOutputChannels);
        scale(stereo, volume);
        if (!stop.stop_requested()) {
            const PulseConnection::Lock lock(connection_);
            deliver(id, stereo, frames < kPartFrames);
        }
    });
}

void PulsePlayer::deliver(std::uint64_t id, std::span<float> stereo, bool complete) {
    const auto found = std::find_if(lanes_.begin(), lanes_.end(),
                                    [id](const Lane& lane) { return lane.voice.id == id; });
    if (found == lanes_.end()) {
        deliverOverflow(id, stereo, complete);
        return;
    }
    Lane& lane = *found;
    lane.voice.decoding = false;
    fit(lane.voice, stereo);
    lane.stream->write(stereo);
    lane.heardBy = Clock::now() + 2s * kAheadFrames / kOutputRate;
    if (complete) {
        lane.stream->drain([this, &lane] { finish(lane); });
    } else {
        refill(lane);
    }
}

void PulsePlayer::deliverOverflow(std::uint64_t id, std::span<float> stereo, bool complete) {
    const auto rest = std::find_if(overflowRests_.begin(), overflowRests_.end(),
                                   [id](const Voice& voice) { return voice.id == id; });
    if (rest == overflowRests_.end()) {
        return;
    }
    rest->decoding = false;
    fit(*rest, stereo);
    overflow_.append(id, stereo, complete);
    if (complete) {
        overflowRests_.erase(rest);
    }
}

/// Has more decoded when what waits at the server gets short, else looks again a little later.
void PulsePlayer::refill(Lane& lane) {
    lane.stream->askQueued([this, &lane](std::optional<std::int64_t> frames) {
        if (frames.value_or(0) < kAheadFrames) {
            decodeNext(lane.voice);
        } else {
            lane.heardBy = Clock::now() + 2s * kAheadFrames / kOutputRate;
            lane.refill = connection_.after(kRefillInterval, [this, &lane] { refill(lane); });
        }
    });
}

}  // namespace chimewerk
