// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "linux/playback/level_shares.h"

namespace chimewerk {

/// The frames of one sound that have not been played, and the gains with which they have been sent
/// to the server. What has been sent can be sent again with other gains, as long as it has not been
/// played. Frames are counted from the sound's start.
class SentSound {
public:
    /// Adds the first frames.
    void begin(std::vector<float> stereo);
    /// Adds the frames after those that it has.
    void append(std::span<const float> stereo);
    /// Frees what is well before `frame`.
    void forgetBefore(std::int64_t frame);

    /// Returns the levels from the block on that holds `frame`; none if the sound is over by then.
    std::span<const float> levelsFrom(std::int64_t frame) const;

    /// What to send: `stereo` comes in place of the last `rewind` frames that have been sent.
    struct Change {
        std::size_t rewind = 0;
        std::span<const float> stereo = {};  // Valid until the next call of `send()` or `append()`.
    };
    /// Returns what to send so that the sound is played with these gains from the block on that
    /// holds `frame`, which is played now. They are not raised where frames have been sent with
    /// lower ones. Nothing is to be sent if `stereo` is empty.
    Change send(std::int64_t frame, std::span<const float> gains);

    /// How many frames have been sent.
    std::int64_t sent() const { return sent_; }

private:
    std::size_t blockOf(std::int64_t frame) const;
    std::int64_t end() const;
    void smoothFrom(std::size_t block);
    std::span<const float> render(std::int64_t from);

    std::int64_t first_ = 0;  // The first frame that is kept; the start of a block.
    std::vector<float> stereo_;
    // Per block from `first_` on:
    std::vector<float> levels_;
    std::vector<float> gains_;
    std::int64_t sent_ = 0;
    std::vector<float> lowered_;  // What is sent if a gain is below 1.
};

}  // namespace chimewerk
