// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace chimewerk {

/// Adds up the sounds that have no stream of their own. A limiter with a soft knee keeps the sum
/// below half of full scale; the other half is for the sounds with a stream. Has no lock and no
/// clock.
class OverflowMixer {
public:
    /// The largest number of sounds at once.
    static constexpr std::size_t kMost = 64;

    /// Adds a sound. If it is not `complete`, more frames follow through `append()`. If there are
    /// `kMost` already, the oldest complete one is removed, or the oldest if none is complete.
    void add(std::uint64_t voice, std::vector<float> stereo, bool complete);
    /// Appends the next frames of a sound; does nothing if the sound was removed.
    void append(std::uint64_t voice, std::span<const float> stereo, bool complete);

    /// Replaces `stereo` with the sum of the next frames of all sounds. A sound that ends, or whose
    /// next frames are missing, adds silence. Complete sounds are removed at their end.
    void mix(std::span<float> stereo);

    bool empty() const { return voices_.empty(); }
    void clear() { voices_.clear(); }
    /// Returns the number of frames of the sound that are not yet mixed; 0 if it was removed.
    std::size_t framesLeft(std::uint64_t voice) const;
    /// Returns the largest number of frames that have not been mixed of any sound.
    std::size_t mostFramesLeft() const;

private:
    struct Voice {
        std::uint64_t id;
        std::vector<float> stereo;
        bool complete;
        std::size_t mixed = 0;  // In samples.
    };

    std::vector<Voice> voices_;
};

}  // namespace chimewerk
