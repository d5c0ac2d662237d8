#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace chimewerk {

/// Cuts samples that come in pieces of any length into blocks of one length. Copies only what does not lie in
/// one piece, and allocates nothing after its construction.
class SampleBlocks {
public:
    /// `length` is at least 1.
    explicit SampleBlocks(std::size_t length) : block_(length) {}

    /// Calls `take` with each block that has become complete, valid during the call only.
    template <typename Take>
    void push(std::span<const float> samples, Take&& take) {
        while (filled_ + samples.size() >= block_.size()) {
            if (filled_ == 0) {
                take(samples.first(block_.size()));
                samples = samples.subspan(block_.size());
            } else {
                samples = append(samples, block_.size() - filled_);
                filled_ = 0;
                take(std::span<const float>(block_));
            }
        }
        append(samples, samples.size());
    }
    /// Forgets what has come of the next block.
    void clear() { filled_ = 0; }

private:
    std::span<const float> append(std::span<const float> samples, std::size_t count) {
        std::copy_n(samples.begin(), count, block_.begin() + static_cast<std::ptrdiff_t>(filled_));
        filled_ += count;
        return samples.subspan(count);
    }

    std::vector<float> block_;
    std::size_t filled_ = 0;
};

}  // namespace chimewerk
