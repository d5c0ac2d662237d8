// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace chimewerk {

/// Divides samples that arrive in pieces of any length into blocks of one length. Copies only
/// blocks that span several pieces, and allocates only in its constructor.
class SampleBlocks {
public:
    /// `length` must be at least 1.
    explicit SampleBlocks(std::size_t length) : block_(length) {}

    /// Calls `take` with each completed block; the block is valid during the call.
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
    /// Drops the samples of an incomplete block.
    void clear() { filled_ = 0; }

private:
    std::span<const float> append(std::span<const float> samples, std::size_t count) {
        std::ranges::copy(samples.first(count), std::span(block_).subspan(filled_).begin());
        filled_ += count;
        return samples.subspan(count);
    }

    std::vector<float> block_;
    std::size_t filled_ = 0;
};

}  // namespace chimewerk
