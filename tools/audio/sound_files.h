// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace chimewerk {

/// Returns an interleaved sine, the same in every channel.
inline std::vector<float> sine(double hertz, double amplitude, double seconds, int rate = 48000,
                               int channels = 2) {
    const auto frames = static_cast<std::size_t>(std::llround(seconds * rate));
    const auto width = static_cast<std::size_t>(channels);
    std::vector<float> samples(frames * width);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::size_t frame = i / width;
        const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(frame) / rate;
        samples[i] = static_cast<float>(amplitude * std::sin(phase));
    }
    return samples;
}

/// Returns the largest magnitude from this sample on; 0 of none.
inline float peakOf(std::span<const float> samples, std::size_t from = 0) {
    float most = 0;
    for (const float sample : samples.subspan(from)) {
        most = std::max(most, std::fabs(sample));
    }
    return most;
}

/// Writes a sound file in one of libsndfile's formats. Throws std::runtime_error.
inline void writeSoundFile(const std::string& path, const std::vector<float>& samples,
                           int rate = 48000, int channels = 2,
                           int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = format;
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_WRITE, &info),
                                                           sf_close);
    const auto frames = static_cast<sf_count_t>(samples.size()) / channels;
    if (!file || sf_writef_float(file.get(), samples.data(), frames) != frames) {
        throw std::runtime_error("cannot write " + path);
    }
}

}  // namespace chimewerk
