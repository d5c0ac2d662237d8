// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/recorder/recording.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

namespace chimewerk {

using namespace std::chrono_literals;

std::chrono::nanoseconds FrameTimeline::length(std::int64_t frames) const {
    return std::chrono::nanoseconds{frames * std::nano::den / rate_};
}

void FrameTimeline::blockArrived(std::int64_t frame, SteadyTime arrival) {
    if (paused_ || frame >= windows_.back().first + rate_) {
        windows_.push_back({frame, paused_, {}});
        paused_ = false;
    }
    windows_.back().origins.push_back(arrival - length(frame));
}

SteadyTime FrameTimeline::timeOf(std::int64_t frame) const {
    constexpr std::size_t kEnoughBlocks = 20;
    auto window = std::prev(
        std::ranges::upper_bound(windows_.begin() + 1, windows_.end(), frame, {}, &Window::first));
    if (window->origins.size() < kEnoughBlocks && !window->afterPause) {
        --window;
    }
    std::vector<SteadyTime> origins = window->origins;
    const auto quartile = origins.begin() + std::ssize(origins) / 4;
    std::ranges::nth_element(origins, quartile);
    return *quartile + length(frame);
}

std::int64_t FrameTimeline::frameAt(SteadyTime time, std::int64_t end) const {
    std::int64_t low = 0;
    std::int64_t high = end;
    while (low < high) {
        const std::int64_t middle = std::midpoint(low, high);
        if (timeOf(middle) < time) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

bool LivePace::blockArrived(std::size_t frames, SteadyTime arrival) {
    constexpr auto kSpan = 100ms;
    constexpr std::size_t kFewestBlocks = 5;
    recent_.emplace_back(arrival, frames);
    bool whole = false;
    while (recent_.front().first <= arrival - kSpan) {
        recent_.pop_front();
        whole = true;
    }
    std::size_t received = 0;
    for (const auto& [when, count] : recent_) {
        received += count;
    }
    const double seconds = static_cast<double>(received) / rate_;
    return whole && recent_.size() >= kFewestBlocks && seconds > 0.08 && seconds < 0.12;
}

void Recording::append(std::span<const float> samples, SteadyTime arrival) {
    timeline_.blockArrived(frames(), arrival);
    samples_.insert(samples_.end(), samples.begin(), samples.end());
}

std::optional<SteadyTime> Recording::firstSoundAfter(SteadyTime time, float threshold) const {
    const auto begin = samples_.begin() + timeline_.frameAt(time, frames()) * kChannels;
    const auto found = std::ranges::find_if(
        begin, samples_.end(), [&](float sample) { return std::fabs(sample) >= threshold; });
    if (found == samples_.end()) {
        return std::nullopt;
    }
    return timeline_.timeOf((found - samples_.begin()) / kChannels);
}

float Recording::peakBetween(SteadyTime begin, SteadyTime end) const {
    const std::int64_t last = timeline_.frameAt(end, frames()) * kChannels;
    float peak = 0.0F;
    for (std::int64_t i = timeline_.frameAt(begin, frames()) * kChannels; i < last; ++i) {
        peak = std::max(peak, std::fabs(samples_[static_cast<std::size_t>(i)]));
    }
    return peak;
}

std::optional<SteadyTime> Recording::end() const {
    return samples_.empty() ? std::nullopt : std::optional{timeline_.timeOf(frames() - 1)};
}

bool Recording::writeWav(const std::filesystem::path& path) const {
    SF_INFO info{};
    info.samplerate = kRate;
    info.channels = kChannels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(
        sf_open(path.c_str(), SFM_WRITE, &info), &sf_close);
    return file && sf_writef_float(file.get(), samples_.data(), frames()) == frames();
}

}  // namespace chimewerk
