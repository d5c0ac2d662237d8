#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace chimewerk {

/// Converts stereo from one rate to another by a windowed sinc, so fast that the head of a sound costs a
/// fraction of a millisecond. Its filters are made at the first use of a rate and kept for the life of the
/// process. Frame 0 of the result is frame 0 of the source: nothing is delayed. Used by one thread at a time.
class Resampler {
public:
    /// The source rates that can be converted, in frames per second.
    static constexpr int kLowestRate = 100;
    static constexpr int kHighestRate = 768000;

    /// `from` is within the limits above.
    Resampler(int from, int to);
    ~Resampler();

    /// Takes the next frames of the source.
    void feed(std::span<const float> stereo);
    /// Tells that there are no more.
    void end();

    /// Writes the frames that the source so far yields, at most `stereo.size() / 2`, and tells how many. Less
    /// than fit in: it wants to be fed, or has ended.
    std::size_t read(std::span<float> stereo);

private:
    struct Filter;
    static std::shared_ptr<const Filter> filterFor(int from, int to);

    const int from_;
    const int to_;
    const std::shared_ptr<const Filter> filter_;
    // The source, a side each, from the oldest frame on that a filter still reaches.
    std::vector<float> left_;
    std::vector<float> right_;
    std::size_t begin_ = 0;  // Where the filter of the next frame begins in them.
    long phase_ = 0;         // The next frame's place behind a source frame, in parts of 1 / `to_`.
    std::size_t fed_ = 0;    // Frames of the source altogether.
    std::size_t written_ = 0;  // Frames of the result altogether.
    bool ended_ = false;
};

}  // namespace chimewerk
