#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace chimewerk {

using SteadyTime = std::chrono::steady_clock::time_point;

/// Places the frames of a recording in time.
///
/// A sink without hardware renders a block when the one before has been played; the block reaches us at once
/// and is played from then on. So a block's arrival less the length of all frames before it is the moment at
/// which frame 0 was played. Many blocks come late: what is late is the renderer, the transport or us, by
/// nothing on a quiet machine and by milliseconds on a busy one. Some come early, by at most their length:
/// when a player starts or stops in the middle of a block, the rest of it is rendered anew together with the
/// beginning of the next. The lower quartile of a second's blocks is disturbed by neither. It is taken for
/// each second anew because the sink's clock may run a little faster or slower than ours.
class FrameTimeline {
public:
    explicit FrameTimeline(int rate) : rate_(rate) {}

    /// A block has arrived whose first frame is the recording's `frame`-th. Frames and arrivals never go
    /// back.
    void blockArrived(std::int64_t frame, SteadyTime arrival);
    /// What arrives from now on follows a pause of unknown length.
    void pause() { paused_ = true; }

    /// When the frame was played; requires that some block has arrived.
    SteadyTime timeOf(std::int64_t frame) const;
    /// The first of the frames below `end` that was not played before `time`; `end` when there is none.
    std::int64_t frameAt(SteadyTime time, std::int64_t end) const;

private:
    /// A second of the recording, or less before a pause.
    struct Window {
        std::int64_t first;
        bool afterPause;
        /// When frame 0 was played, had there been no pause, by each block.
        std::vector<SteadyTime> origins;
    };

    std::chrono::nanoseconds length(std::int64_t frames) const;

    const int rate_;
    std::vector<Window> windows_;
    bool paused_ = true;
};

/// Recognises the moment from which blocks arrive at the pace at which they are played. A sink that nobody
/// listened to may have rendered seconds ahead: it first delivers those in a burst, or nothing until they are
/// over.
class LivePace {
public:
    explicit LivePace(int rate) : rate_(rate) {}

    /// Takes note of a block; true when the last tenth of a second was live.
    bool blockArrived(std::size_t frames, SteadyTime arrival);

private:
    int rate_;
    std::deque<std::pair<SteadyTime, std::size_t>> recent_;
};

/// What a sink played: stereo, 48 kHz, neither clipped nor scaled.
class Recording {
public:
    static constexpr int kRate = 48000;
    static constexpr int kChannels = 2;

    /// Interleaved samples that have arrived at this moment; whole frames.
    void append(std::span<const float> samples, SteadyTime arrival);
    void pause() { timeline_.pause(); }

    /// When the first frame not before `time` was played that reaches `threshold` on a channel, in either
    /// direction; 1.0 is full scale.
    std::optional<SteadyTime> firstSoundAfter(SteadyTime time, float threshold) const;
    /// The largest absolute sample played from `begin` on and before `end`; 0 when nothing was recorded then.
    float peakBetween(SteadyTime begin, SteadyTime end) const;
    /// When the last recorded frame was played; none before the first.
    std::optional<SteadyTime> end() const;

    /// All samples, interleaved.
    const std::vector<float>& samples() const { return samples_; }
    /// Writes all as a WAV file of 32-bit floats. False when it cannot be written.
    [[nodiscard]] bool writeWav(const std::filesystem::path& path) const;

private:
    std::int64_t frames() const { return static_cast<std::int64_t>(samples_.size()) / kChannels; }

    std::vector<float> samples_;
    FrameTimeline timeline_{kRate};
};

}  // namespace chimewerk
