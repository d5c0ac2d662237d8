// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace chimewerk {

/// Converts stereo from one rate to another by a windowed sinc, fast enough that the head of a
/// sound takes a fraction of a millisecond. The filters are made at the first use of a rate and a
/// few are kept. Frame 0 of the result is frame 0 of the source: there is no delay.
/// Used by one thread at a time.
class Resampler {
public:
    /// The source rates that can be converted, in frames per second.
    static constexpr int kLowestRate = 100;
    static constexpr int kHighestRate = 768000;

    /// `from` must be within the limits above.
    Resampler(int from, int to);
    ~Resampler();

    /// Appends the next frames of the source.
    void feed(std::span<const float> stereo);
    /// Ends the source: no more frames follow.
    void end();

    /// Writes up to `stereo.size() / 2` frames of the result and returns their number. If fewer
    /// than fit, it needs more of the source, or the result has ended.
    std::size_t read(std::span<float> stereo);

private:
    struct Filter;
    static std::shared_ptr<const Filter> filterFor(int from, int to);

    const int from_;
    const int to_;
    const std::shared_ptr<const Filter> filter_;
    // The source's two channels, from the oldest frame that a filter still uses.
    std::vector<float> left_;
    std::vector<float> right_;
    std::size_t begin_ = 0;  // Where the filter of the next frame starts in them.
    // The distance of the next frame from a source frame, in units of 1 / `to_`.
    long phase_ = 0;
    std::size_t fed_ = 0;      // Frames of the source so far.
    std::size_t written_ = 0;  // Frames of the result so far.
    bool ended_ = false;
};

}  // namespace chimewerk
