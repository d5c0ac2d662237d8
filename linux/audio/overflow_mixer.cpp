#include "linux/audio/overflow_mixer.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace chimewerk {

void OverflowMixer::add(std::uint64_t voice, std::vector<float> stereo, bool complete) {
    voices_.push_back({voice, std::move(stereo), complete});
}

bool OverflowMixer::append(std::uint64_t voice, std::span<const float> stereo, bool complete) {
    const auto found = std::find_if(voices_.begin(), voices_.end(),
                                    [voice](const Voice& v) { return v.id == voice; });
    if (found == voices_.end()) {
        return false;
    }
    // What has been mixed goes first, so that a long sound does not pile up.
    found->stereo.erase(found->stereo.begin(),
                        found->stereo.begin() + static_cast<std::ptrdiff_t>(found->mixed));
    found->mixed = 0;
    found->stereo.insert(found->stereo.end(), stereo.begin(), stereo.end());
    found->complete = complete;
    return true;
}

void OverflowMixer::mix(std::span<float> stereo) {
    std::fill(stereo.begin(), stereo.end(), 0.0F);
    for (Voice& voice : voices_) {
        const std::size_t count = std::min(stereo.size(), voice.stereo.size() - voice.mixed);
        std::transform(stereo.begin(), stereo.begin() + static_cast<std::ptrdiff_t>(count),
                       voice.stereo.begin() + static_cast<std::ptrdiff_t>(voice.mixed),
                       stereo.begin(), std::plus<>());
        voice.mixed += count;
    }
    std::erase_if(voices_, [](const Voice& voice) {
        return voice.complete && voice.mixed == voice.stereo.size();
    });
}

std::size_t OverflowMixer::framesLeft(std::uint64_t voice) const {
    for (const Voice& v : voices_) {
        if (v.id == voice) {
            return (v.stereo.size() - v.mixed) / 2;
        }
    }
    return 0;
}

}  // namespace chimewerk
