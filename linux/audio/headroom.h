// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace chimewerk {

/// Keeps the sum of all sounds that play at once within full scale.
///
/// The audio server adds up the sounds and clips the sum, which crackles. But what will play in the
/// next seconds is known: every sound reserves its level, in blocks of 5 ms, when it starts. A
/// sound that starts while others play gets, block by block, what is left of the range, and so
/// becomes louder as they fade. A sound that starts in silence is not changed.
///
/// Has no clock and no lock. Time is in frames at the output rate and only goes forward.
class Headroom {
public:
    /// Frames in a block.
    static constexpr std::size_t kBlock = 240;
    /// How far ahead levels can be reserved, in blocks (20 s). Levels further ahead are
    /// not reserved.
    static constexpr std::size_t kHorizon = 4096;

    /// Scales the stereo frames in place so that, played from frame `start` on, they fit beside
    /// the reserved levels, and reserves their levels. `start` may be wrong by 10 ms; make calls
    /// roughly in the order of their starts. The frames take at most `ceiling` (0 to 1) of the
    /// full range.
    void fit(std::span<float> stereo, std::int64_t start, float ceiling = 1.0F);

private:
    void forgetBefore(std::int64_t block);
    float levelAt(std::int64_t block) const;
    void reserve(std::int64_t begin, const std::vector<float>& levels);
    float& level(std::int64_t block) {
        return levels_.at(static_cast<std::size_t>(block) % kHorizon);
    }

    // A ring of the levels of `kHorizon` blocks from `first_` on.
    std::array<float, kHorizon> levels_{};
    std::int64_t first_ = 0;
};

}  // namespace chimewerk
