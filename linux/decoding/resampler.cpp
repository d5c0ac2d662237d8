// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/decoding/resampler.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <numbers>
#include <numeric>

namespace chimewerk {

namespace {

/// How many source frames make one result frame; proportionally more if the rate is lowered.
constexpr std::size_t kTaps = 32;
/// The number of filters for positions between two source frames; positions between two filters
/// are interpolated.
constexpr std::size_t kPhases = 256;
/// More filters than this are not kept: those of the highest rates take half a MiB each.
constexpr std::size_t kMostFilters = 4;
/// The window's shape: about 80 dB of attenuation.
constexpr double kKaiserBeta = 8.0;
/// The end of the pass band, relative to half of the lower rate: the filter needs some room to
/// fall off.
constexpr double kPassBand = 0.93;

/// Returns the modified Bessel function of the first kind of order 0, computed by its series.
double bessel0(double x) {
    double term = 1.0;
    double sum = 1.0;
    for (int k = 1; term > sum * 1e-9; ++k) {
        term *= (x / (2.0 * k)) * (x / (2.0 * k));
        sum += term;
    }
    return sum;
}

double sinc(double x) {
    return x == 0.0 ? 1.0 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
}

}  // namespace

/// Row p holds the taps for a result frame that is p / kPhases after the left one of the two middle
/// source frames.
struct Resampler::Filter {
    std::size_t taps;
    std::vector<float> rows;

    explicit Filter(double lowering) {
        // A multiple of 4, so that the loop over the taps can be vectorised.
        taps = (static_cast<std::size_t>(std::ceil(static_cast<double>(kTaps) * lowering)) + 3) /
               4 * 4;
        rows.resize((kPhases + 1) * taps);
        const double cutoff = kPassBand / lowering;
        const double half = static_cast<double>(taps) / 2;
        const double atCentre = bessel0(kKaiserBeta);
        for (std::size_t phase = 0; phase <= kPhases; ++phase) {
            const std::span row(rows.data() + phase * taps, taps);
            for (std::size_t tap = 0; tap < taps; ++tap) {
                const double x =
                    static_cast<double>(tap) - (half - 1) - static_cast<double>(phase) / kPhases;
                const double edge = x / half;
                const double window =
                    std::fabs(edge) < 1
                        ? bessel0(kKaiserBeta * std::sqrt(1 - edge * edge)) / atCentre
                        : 0;
                row[tap] = static_cast<float>(sinc(x * cutoff) * window);
            }
            // The taps of a row add up to 1, so that a constant level does not change.
            const float sum = std::accumulate(row.begin(), row.end(), 0.0F);
            std::ranges::for_each(row, [sum](float& value) { value /= sum; });
        }
    }
};

std::shared_ptr<const Resampler::Filter> Resampler::filterFor(int from, int to) {
    static std::mutex lock;
    static std::map<int, std::shared_ptr<const Filter>> made;
    // All lower rates share one filter.
    const int lower = std::max(from, to);
    const std::lock_guard guard(lock);
    if (made.size() > kMostFilters) {
        made.clear();
    }
    auto& filter = made[lower];
    if (!filter) {
        filter = std::make_shared<const Filter>(static_cast<double>(lower) / to);
    }
    return filter;
}

Resampler::Resampler(int from, int to) : from_(from), to_(to), filter_(filterFor(from, to)) {
    // The silence before the sound, into which the first filters reach.
    left_.resize(filter_->taps / 2 - 1);
    right_.resize(left_.size());
}

Resampler::~Resampler() = default;

void Resampler::feed(std::span<const float> stereo) {
    const auto keepFrom = static_cast<std::ptrdiff_t>(std::min(begin_, left_.size()));
    left_.erase(left_.begin(), left_.begin() + keepFrom);
    right_.erase(right_.begin(), right_.begin() + keepFrom);
    begin_ -= static_cast<std::size_t>(keepFrom);
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        left_.push_back(stereo[i]);
        right_.push_back(stereo[i + 1]);
    }
    fed_ += stereo.size() / 2;
}

void Resampler::end() {
    if (!ended_) {
        ended_ = true;
        // The silence after the sound.
        left_.resize(left_.size() + filter_->taps);
        right_.resize(right_.size() + filter_->taps);
    }
}

std::size_t Resampler::read(std::span<float> stereo) {
    const std::size_t taps = filter_->taps;
    std::size_t room = stereo.size() / 2;
    if (ended_) {
        // The result is exactly as long as the source.
        const auto whole =
            static_cast<std::size_t>(std::llround(static_cast<double>(fed_) * to_ / from_));
        room = std::min(room, whole - std::min(whole, written_));
    }
    std::size_t done = 0;
    for (; done < room && begin_ + taps <= left_.size(); ++done) {
        const double row = static_cast<double>(phase_) * kPhases / to_;
        const auto below = static_cast<std::size_t>(row);
        const auto towardsNext = static_cast<float>(row - static_cast<double>(below));
        const float* const first = filter_->rows.data() + below * taps;
        const float* const next = first + taps;
        const float* const left = left_.data() + begin_;
        const float* const right = right_.data() + begin_;
        // Four sums per channel, so that the compiler can keep them in one register.
        float sumLeft[4] = {};
        float sumRight[4] = {};
        for (std::size_t tap = 0; tap < taps; tap += 4) {
            for (std::size_t lane = 0; lane < 4; ++lane) {
                const float weight =
                    first[tap + lane] + towardsNext * (next[tap + lane] - first[tap + lane]);
                sumLeft[lane] += weight * left[tap + lane];
                sumRight[lane] += weight * right[tap + lane];
            }
        }
        stereo[2 * done] = (sumLeft[0] + sumLeft[1]) + (sumLeft[2] + sumLeft[3]);
        stereo[2 * done + 1] = (sumRight[0] + sumRight[1]) + (sumRight[2] + sumRight[3]);
        phase_ += from_;
        begin_ += static_cast<std::size_t>(phase_ / to_);
        phase_ %= to_;
    }
    written_ += done;
    return done;
}

}  // namespace chimewerk
