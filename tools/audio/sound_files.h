#pragma once

#include <sndfile.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace chimewerk {

/// A sine of `amplitude` and `hertz`, interleaved, alike in every channel.
inline std::vector<float> sine(double hertz, double amplitude, double seconds, int rate = 48000,
                               int channels = 2) {
    const auto frames = static_cast<std::size_t>(std::llround(seconds * rate));
    const auto width = static_cast<std::size_t>(channels);
    std::vector<float> samples(frames * width);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(i / width) / rate;
        samples[i] = static_cast<float>(amplitude * std::sin(phase));
    }
    return samples;
}

/// Writes a sound file of one of libsndfile's formats, 16-bit WAV unless told otherwise.
inline void writeSoundFile(const std::string& path, const std::vector<float>& samples,
                           int rate = 48000, int channels = 2,
                           int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = format;
    SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
    sf_writef_float(file, samples.data(), static_cast<sf_count_t>(samples.size()) / channels);
    sf_close(file);
}

}  // namespace chimewerk
