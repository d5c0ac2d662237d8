#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace chimewerk {

/// Adds up the sounds for which there is no stream of their own. Its sounds have been fitted into the range
/// beforehand (see headroom.h), so their sum needs no limit. No lock, no clock.
class OverflowMixer {
public:
    /// Adds a sound; `complete` tells that its frames are all there are.
    void add(std::uint64_t voice, std::vector<float> stereo, bool complete);
    /// Adds the next frames of a sound; false when there is no such sound any more.
    bool append(std::uint64_t voice, std::span<const float> stereo, bool complete);

    /// Replaces `stereo` with the sum of the next frames of all sounds, silence where they end. A sound that
    /// is not complete is waited for.
    void mix(std::span<float> stereo);

    bool empty() const { return voices_.empty(); }
    void clear() { voices_.clear(); }
    /// The frames of this sound that are not yet mixed.
    std::size_t framesLeft(std::uint64_t voice) const;

private:
    struct Voice {
        std::uint64_t id;
        std::vector<float> stereo;
        bool complete;
        std::size_t mixed = 0;  // samples
    };

    std::vector<Voice> voices_;
};

}  // namespace chimewerk
