// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the cost of one microphone buffer on its thread, compared with only reading or copying
// its samples.
#include <benchmark/benchmark.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "bench/null_parts.h"
#include "linux/base/epoll_main_queue.h"
#include "monitors/knock_detector.h"
#include "monitors/peak_magnitude.h"

namespace chimewerk {
namespace {

constexpr std::size_t kFrames = 512;
/// More than any cache holds.
constexpr std::size_t kMemoryBytes = std::size_t{256} << 20;
using Buffer = std::span<const float>;

/// Returns samples of a quiet room, as many as the benchmark asks for.
Buffer samplesFor(const benchmark::State& state) {
    static const std::vector<float> kSamples = [] {
        std::vector<float> samples(kMemoryBytes / sizeof(float));
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = 0.0001F * static_cast<float>(i * 7919 % 1000) - 0.05F;
        }
        return samples;
    }();
    return Buffer(kSamples).first(static_cast<std::size_t>(state.range(0)) / sizeof(float));
}

/// Passes the buffers of the samples to `analyse`, again and again.
template <typename Analyse>
void eachBuffer(benchmark::State& state, Analyse analyse) {
    const Buffer samples = samplesFor(state);
    std::size_t at = 0;
    for ([[maybe_unused]] const auto& round : state) {
        analyse(samples.subspan(at, kFrames));
        at = at + 2 * kFrames <= samples.size() ? at + kFrames : 0;
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(kFrames * sizeof(float)));
}

void readOnly(benchmark::State& state) {
    eachBuffer(state, [](Buffer buffer) {
        std::uint32_t sum = 0;
        for (const float sample : buffer) {
            sum += std::bit_cast<std::uint32_t>(sample);
        }
        benchmark::DoNotOptimize(sum);
    });
}

void copy(benchmark::State& state) {
    std::vector<float> there(kFrames);
    eachBuffer(state, [&there](Buffer buffer) {
        std::memcpy(there.data(), buffer.data(), buffer.size_bytes());
        benchmark::DoNotOptimize(there.data());
        benchmark::ClobberMemory();
    });
}

/// The same rule without vectors.
void plainPeak(benchmark::State& state) {
    eachBuffer(state, [](Buffer buffer) {
        float peak = 0.0F;
        for (const float sample : buffer) {
            const float magnitude = std::fabs(sample);
            peak = magnitude > peak ? magnitude : peak;
        }
        benchmark::DoNotOptimize(peak);
    });
}

void peak(benchmark::State& state) {
    eachBuffer(state, [](Buffer buffer) { benchmark::DoNotOptimize(peakMagnitude(buffer)); });
}

void analyzeBuffer(benchmark::State& state) {
    EpollMainQueue queue;
    NullMicrophone microphone;
    KnockDetector detector(queue, microphone);
    eachBuffer(state, [&detector](Buffer buffer) { detector.analyzeBuffer(buffer); });
}

/// Every buffer holds a knock, which is posted to the queue and taken from it.
void knock(benchmark::State& state) {
    EpollMainQueue queue;
    NullMicrophone microphone;
    KnockDetector::Time now{};
    KnockDetector detector(queue, microphone, [&now] { return now += std::chrono::seconds(1); });
    detector.slapThreshold = 0.01F;
    eachBuffer(state, [&](Buffer buffer) {
        detector.analyzeBuffer(buffer);
        queue.dispatch();
    });
}

/// One buffer, which stays in the first-level cache; and so many that each comes from memory.
void fromCacheAndMemory(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("bytes")->Arg(kFrames * sizeof(float))->Arg(kMemoryBytes);
}

BENCHMARK(readOnly)->Apply(fromCacheAndMemory);
BENCHMARK(copy)->Apply(fromCacheAndMemory);
BENCHMARK(plainPeak)->Apply(fromCacheAndMemory);
BENCHMARK(peak)->Apply(fromCacheAndMemory);
BENCHMARK(analyzeBuffer)->Apply(fromCacheAndMemory);
BENCHMARK(knock)->Arg(kFrames * sizeof(float));

}  // namespace
}  // namespace chimewerk

BENCHMARK_MAIN();
