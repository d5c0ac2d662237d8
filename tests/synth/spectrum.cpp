#include "synth/spectrum.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace chimewerk::sounds {
namespace {

constexpr std::size_t kSize = 2048;
using Block = std::array<std::complex<double>, kSize>;

const Block& roots() {
    static const Block table = [] {
        Block unity;
        for (std::size_t i = 0; i < kSize; ++i) {
            unity[i] = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(i) / kSize);
        }
        return unity;
    }();
    return table;
}

// The textbook transform: samples in bit-reversed order, then butterflies of growing span.
void transform(Block& block) {
    for (std::size_t i = 1, j = 0; i < kSize; ++i) {
        std::size_t bit = kSize / 2;
        for (; (j & bit) != 0; bit /= 2) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(block[i], block[j]);
        }
    }
    for (std::size_t span = 1; span < kSize; span *= 2) {
        for (std::size_t start = 0; start < kSize; start += 2 * span) {
            for (std::size_t i = 0; i < span; ++i) {
                const std::complex<double> odd =
                    block[start + span + i] * roots()[i * kSize / (2 * span)];
                block[start + span + i] = block[start + i] - odd;
                block[start + i] += odd;
            }
        }
    }
}

Spectrum spectrumAround(const Samples& samples, std::size_t centre, std::size_t window) {
    Block block{};
    for (std::size_t i = 0; i < window; ++i) {
        const std::size_t at = centre + i;
        if (at >= window / 2 && at - window / 2 < samples.size()) {
            block[i] = samples[at - window / 2] * (0.5 - 0.5 * roots()[i * kSize / window].real());
        }
    }
    transform(block);
    Spectrum power{};
    for (std::size_t bin = 0; bin < kBins; ++bin) {
        power[bin] = std::norm(block[bin]);
    }
    return power;
}

// In octaves above 1 Hz.
struct Moment {
    double power = 0.0;
    double centre = 0.0;
};

Moment momentOf(const Spectrum& spectrum) {
    constexpr std::size_t kLowestBin = 2;
    Moment moment;
    for (std::size_t bin = kLowestBin; bin < kBins; ++bin) {
        moment.power += spectrum[bin];
        moment.centre += spectrum[bin] * std::log2(static_cast<double>(bin) * kHertzPerBin);
    }
    moment.centre /= std::max(moment.power, 1e-12);
    return moment;
}

double meanCentre(const std::vector<Moment>& moments, std::size_t from, std::size_t to) {
    double sum = 0.0;
    double weight = 1e-12;
    for (std::size_t i = from; i < to; ++i) {
        sum += std::sqrt(moments[i].power) * moments[i].centre;
        weight += std::sqrt(moments[i].power);
    }
    return sum / weight;
}

}  // namespace

std::vector<Spectrum> spectra(const Samples& samples, double hop, double window) {
    std::vector<Spectrum> result;
    const auto step = static_cast<std::size_t>(hop * kSampleRate);
    const auto seen = std::min(kSize, static_cast<std::size_t>(window * kSampleRate));
    for (std::size_t centre = 0; centre < samples.size(); centre += step) {
        result.push_back(spectrumAround(samples, centre, seen));
    }
    return result;
}

double trend(const Samples& samples) {
    std::vector<Moment> moments;
    double loudest = 0.0;
    for (const Spectrum& spectrum : spectra(samples, 0.01)) {
        moments.push_back(momentOf(spectrum));
        loudest = std::max(loudest, moments.back().power);
    }
    std::erase_if(moments, [=](const Moment& moment) { return moment.power < 0.01 * loudest; });
    const std::size_t third = std::max<std::size_t>(1, moments.size() / 3);
    return moments.empty() ? 0.0
                           : meanCentre(moments, moments.size() - third, moments.size()) -
                                 meanCentre(moments, 0, third);
}

double shareAbove(double hertz, const Samples& samples) {
    const auto border = static_cast<std::size_t>(hertz / kHertzPerBin);
    double above = 0.0;
    double all = 1e-12;
    for (const Spectrum& spectrum : spectra(samples, 0.02)) {
        for (std::size_t bin = 1; bin < kBins; ++bin) {
            all += spectrum[bin];
            above += bin > border ? spectrum[bin] : 0.0;
        }
    }
    return above / all;
}

Portrait::Portrait(const Samples& samples) {
    constexpr double kRange = 40.0;
    double loudest = 1e-12;
    for (const Spectrum& spectrum : spectra(samples, 0.02)) {
        auto& frame = frames_.emplace_back();
        for (std::size_t bin = 1; bin < kBins; ++bin) {
            const double thirds =
                3.0 * std::log2(static_cast<double>(bin) * kHertzPerBin / 100.0) + 1.5;
            frame[static_cast<std::size_t>(std::clamp(thirds, 0.0, kBands - 1.0))] += spectrum[bin];
        }
        loudest = std::max(loudest, *std::max_element(frame.begin(), frame.end()));
    }
    for (auto& frame : frames_) {
        for (double& level : frame) {
            level = std::max(0.0, kRange + 10.0 * std::log10(std::max(level, 1e-12) / loudest));
        }
    }
}

int Portrait::strokes() const {
    // Two frames apart, so that a beginning that falls between two frames counts fully.
    constexpr double kRise = 3.0;
    int count = 0;
    bool rising = true;  // the first frame is the first stroke
    for (std::size_t i = 2; i < frames_.size(); ++i) {
        double rise = 0.0;
        for (std::size_t band = 0; band < kBands; ++band) {
            rise += std::max(0.0, frames_[i][band] - frames_[i - 2][band]) / kBands;
        }
        count += rise >= kRise && !rising ? 1 : 0;
        rising = rise >= kRise;
    }
    return count + 1;
}

double Portrait::distanceTo(const Portrait& other) const {
    static constexpr std::array<double, kBands> kNothing{};
    double sum = 0.0;
    int cells = 0;
    for (std::size_t i = 0; i < std::max(frames_.size(), other.frames_.size()); ++i) {
        const auto& mine = i < frames_.size() ? frames_[i] : kNothing;
        const auto& theirs = i < other.frames_.size() ? other.frames_[i] : kNothing;
        for (std::size_t band = 0; band < kBands; ++band) {
            const double difference = mine[band] - theirs[band];
            sum += difference * difference;
            cells += mine[band] > 0.0 || theirs[band] > 0.0 ? 1 : 0;
        }
    }
    return cells == 0 ? 0.0 : std::sqrt(sum / cells);
}

}  // namespace chimewerk::sounds
