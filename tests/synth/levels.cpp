#include "synth/levels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace chimewerk::sounds {
namespace {

constexpr double kSilence = -200.0;

double decibels(double amplitude) {
    return amplitude > 1e-10 ? 20.0 * std::log10(amplitude) : kSilence;
}

// Direct form I, so that it shares neither code nor form with the filter that mastered the files.
Samples filtered(const Samples& input, const std::array<double, 5>& c) {
    Samples output(input.size());
    double x1 = 0.0;
    double x2 = 0.0;
    double y1 = 0.0;
    double y2 = 0.0;
    for (std::size_t i = 0; i < input.size(); ++i) {
        const double y = c[0] * input[i] + c[1] * x1 + c[2] * x2 - c[3] * y1 - c[4] * y2;
        x2 = x1;
        x1 = input[i];
        y2 = y1;
        y1 = y;
        output[i] = y;
    }
    return output;
}

// The mean square of the loudest window, where the window may reach beyond the sound.
double loudestMeanSquare(const Samples& samples, std::size_t window) {
    double sum = 0.0;
    double loudest = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        sum += samples[i] * samples[i];
        if (i >= window) {
            sum -= samples[i - window] * samples[i - window];
        }
        loudest = std::max(loudest, sum);
    }
    return loudest / static_cast<double>(window);
}

double endingLevel(const Samples& samples) {
    constexpr std::size_t kWindow = 192;
    const std::size_t tail = std::min(kWindow, samples.size());
    const Samples last(samples.end() - static_cast<std::ptrdiff_t>(tail), samples.end());
    const double square = std::inner_product(last.begin(), last.end(), last.begin(), 0.0) / kWindow;
    return decibels(std::sqrt(square)) - decibels(std::sqrt(loudestMeanSquare(samples, kWindow)));
}

int longestPlateau(const Samples& samples) {
    const auto [low, high] = std::minmax_element(samples.begin(), samples.end());
    int longest = 0;
    int run = 0;
    double before = 0.0;
    for (const double sample : samples) {
        const bool extreme = sample == *low || sample == *high;
        run = extreme && sample == before ? run + 1 : static_cast<int>(extreme);
        before = sample;
        longest = std::max(longest, run);
    }
    return longest;
}

}  // namespace

double loudness(const Samples& samples) {
    Samples padded = samples;
    // What the weighting filter still gives after the sound's end belongs to it.
    padded.resize(samples.size() + 4800, 0.0);
    constexpr std::array<double, 5> kHead = {1.53512485958697, -2.69169618940638, 1.19839281085285,
                                             -1.69065929318241, 0.73248077421585};
    constexpr std::array<double, 5> kBody = {1.0, -2.0, 1.0, -1.99004745483398, 0.99007225036621};
    const double square = loudestMeanSquare(filtered(filtered(padded, kHead), kBody), 19200);
    return square > 0.0 ? -0.691 + 10.0 * std::log10(2.0 * square) : kSilence;
}

Levels measureLevels(const Samples& samples) {
    Levels levels;
    if (samples.empty()) {
        return levels;
    }
    levels.seconds = static_cast<double>(samples.size()) / kSampleRate;
    double peak = 0.0;
    for (const double sample : samples) {
        peak = std::max(peak, std::abs(sample));
    }
    const auto first = std::find_if(samples.begin(), samples.end(),
                                    [=](double sample) { return std::abs(sample) >= 0.01 * peak; });
    levels.onset = 1000.0 * static_cast<double>(first - samples.begin()) / kSampleRate;
    levels.peak = decibels(peak);
    levels.loudness = loudness(samples);
    levels.firstStep = decibels(std::abs(samples.front()));
    levels.lastStep = decibels(std::abs(samples.back()));
    levels.ending = endingLevel(samples);
    const double mean =
        std::accumulate(samples.begin(), samples.end(), 0.0) / static_cast<double>(samples.size());
    levels.offset = decibels(std::abs(mean)) - levels.peak;
    levels.plateau = longestPlateau(samples);
    return levels;
}

}  // namespace chimewerk::sounds
