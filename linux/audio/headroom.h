#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace chimewerk {

/// Keeps the sum of all sounds that play at once within full scale.
///
/// The sound server adds the sounds up and cuts off what goes beyond, which is heard as a crackle. But what
/// will play in the next seconds is known: every sound reserves its level, in blocks of 5 ms, when it starts.
/// A sound that starts while others play gets, block by block, what they leave of the range, and so swells as
/// they fade. A sound that starts in silence is left as it is.
///
/// No clock of its own, no lock. Time is in frames at the output rate, on a line that only goes forward.
class Headroom {
public:
    /// Frames in a block.
    static constexpr std::size_t kBlock = 240;
    /// How far ahead levels can be reserved, in blocks (20 s). What lies beyond is not reserved.
    static constexpr std::size_t kHorizon = 4096;

    /// Scales the stereo frames in place so that, played from frame `start` on, they fit in beside what has
    /// been reserved, and reserves them. `start` may be off by 10 ms; calls come in about the order of their
    /// starts. No more than `ceiling` (0 to 1) of the full range is taken.
    void fit(std::span<float> stereo, std::int64_t start, float ceiling = 1.0F);

private:
    void forgetBefore(std::int64_t block);
    float levelAt(std::int64_t block) const;
    void reserve(std::int64_t begin, const std::vector<float>& levels);
    float& level(std::int64_t block) {
        return levels_.at(static_cast<std::size_t>(block) % kHorizon);
    }

    std::array<float, kHorizon>
        levels_{};  // A ring, of which the entries from `first_` on are in use.
    std::int64_t first_ = 0;
};

}  // namespace chimewerk
