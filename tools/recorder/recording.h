// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

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

/// Computes when each frame of a recording was played.
///
/// A sink without hardware renders a block when it has played the one before. The block reaches the
/// recorder at once and is played from then on. So frame 0 was played at the arrival of any block
/// minus the length of all frames before that block. Many blocks arrive late, because of the
/// renderer, the transport or the recorder: not at all on a quiet machine, by milliseconds on a
/// busy one. Some arrive early, by at most their length: when a player starts or stops within a
/// block, the rest of it is rendered again with the start of the next. The lower quartile of the
/// blocks of one second is affected by neither. It is computed for each second, because the sink's
/// clock may run a little faster or slower than the system's.
class FrameTimeline {
public:
    explicit FrameTimeline(int rate) : rate_(rate) {}

    /// Adds a block that starts with the recording's frame number `frame`. Frame numbers and
    /// arrivals must increase.
    void blockArrived(std::int64_t frame, SteadyTime arrival);
    /// The next block follows a pause of unknown length.
    void pause() { paused_ = true; }

    /// Returns when the frame was played. At least one block must have arrived.
    SteadyTime timeOf(std::int64_t frame) const;
    /// Returns the first frame below `end` that was played at `time` or later; `end` if there
    /// is none.
    std::int64_t frameAt(SteadyTime time, std::int64_t end) const;

private:
    /// One second of the recording, or less before a pause.
    struct Window {
        std::int64_t first;
        bool afterPause;
        /// For each block, when frame 0 would have been played without a pause.
        std::vector<SteadyTime> origins;
    };

    std::chrono::nanoseconds length(std::int64_t frames) const;

    const int rate_;
    std::vector<Window> windows_;
    bool paused_ = true;
};

/// Detects when blocks start to arrive as fast as they are played. A sink that nobody recorded from
/// may have rendered seconds ahead: it first delivers those in a burst, or delivers nothing until
/// they are over.
class LivePace {
public:
    explicit LivePace(int rate) : rate_(rate) {}

    /// Adds a block; returns whether the last tenth of a second was live.
    bool blockArrived(std::size_t frames, SteadyTime arrival);

private:
    int rate_;
    std::deque<std::pair<SteadyTime, std::size_t>> recent_;
};

/// The samples that a sink played: stereo, 48 kHz, neither clipped nor scaled.
class Recording {
public:
    static constexpr int kRate = 48000;
    static constexpr int kChannels = 2;

    /// Appends whole frames, interleaved, that arrived at `arrival`.
    void append(std::span<const float> samples, SteadyTime arrival);
    void pause() { timeline_.pause(); }

    /// Returns when the first frame was played, at `time` or later, that has a sample with an
    /// absolute value of at least `threshold`; 1.0 is full scale.
    std::optional<SteadyTime> firstSoundAfter(SteadyTime time, float threshold) const;
    /// Returns the largest absolute sample played from `begin` to before `end`; 0 if nothing was
    /// recorded then.
    float peakBetween(SteadyTime begin, SteadyTime end) const;
    /// Returns when the last recorded frame was played; none before the first.
    std::optional<SteadyTime> end() const;

    /// All samples, interleaved.
    const std::vector<float>& samples() const { return samples_; }
    /// Writes a WAV file of 32-bit floats. Returns false if it cannot be written.
    [[nodiscard]] bool writeWav(const std::filesystem::path& path) const;

private:
    std::int64_t frames() const { return static_cast<std::int64_t>(samples_.size()) / kChannels; }

    std::vector<float> samples_;
    FrameTimeline timeline_{kRate};
};

}  // namespace chimewerk
