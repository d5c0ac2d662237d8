// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the cost of a large collection of custom themes: at the start, and at each change while
// the program runs.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/bench_library.h"
#include "linux/base/epoll_main_queue.h"
#include "sound/sound_event.h"
#include "tools/files/temporary_folder.h"

namespace chimewerk {
namespace {

constexpr int kThemes = 1000;

std::vector<CustomTheme> manyThemes() {
    std::vector<CustomTheme> themes;
    for (int i = 0; i < kThemes; ++i) {
        ThemeSounds::Map sounds;
        for (const SoundEvent& event : factoryEvents()) {
            sounds[event.id] = "/home/somebody/.local/share/Chimewerk/" + event.id + "_" +
                               std::to_string(i) + ".wav";
        }
        themes.push_back({.id = randomUuid(),
                          .name = "Theme " + std::to_string(i),
                          .sounds = ThemeSounds(sounds)});
    }
    return themes;
}

/// A configuration folder, empty or with many themes stored in it.
class ConfigFolder {
public:
    explicit ConfigFolder(bool many) {
        if (many) {
            BenchLibrary library(queue_, path());
            library.sounds.customThemes = manyThemes();
            library.sounds.setCustomTheme(library.sounds.customThemes.front());
        }
    }
    std::string path() const { return folder_.path().string(); }

private:
    EpollMainQueue queue_;
    TemporaryFolder folder_;
};

double milliseconds(const std::function<void()>& work) {
    const auto begun = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begun)
        .count();
}

/// Returns the processor time of this thread, which other programs on the machine do not affect.
double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

double quantile(std::vector<double>& values, double part) {
    std::sort(values.begin(), values.end());
    return values.at(static_cast<std::size_t>(part * static_cast<double>(values.size() - 1)));
}

/// From opening the store to the loaded library, with and without the themes in turn.
void startWithAThousandThemes(benchmark::State& state) {
    const ConfigFolder empty(false);
    const ConfigFolder many(true);
    EpollMainQueue queue;
    const auto start = [&queue](const ConfigFolder& config) {
        std::unique_ptr<BenchLibrary> library;
        return milliseconds(
            [&] { library = std::make_unique<BenchLibrary>(queue, config.path()); });
    };
    std::vector<double> without;
    std::vector<double> with;
    for ([[maybe_unused]] const auto& round : state) {
        without.push_back(start(empty));
        with.push_back(start(many));
    }
    state.counters["empty_ms"] = quantile(without, 0.5);
    state.counters["thousand_ms"] = quantile(with, 0.5);
    state.counters["extra_ms"] = quantile(with, 0.5) - quantile(without, 0.5);
    state.counters["extra_p90_ms"] = quantile(with, 0.9) - quantile(without, 0.5);
}
BENCHMARK(startWithAThousandThemes)->Iterations(100)->Unit(benchmark::kMillisecond);

/// Measures the longest time that each kind of change, with the main loop's work that follows,
/// blocks the main thread while the worker writes.
void changeAmongAThousandThemes(benchmark::State& state,
                                const std::function<void(SoundManager&, int)>& change) {
    const ConfigFolder config(true);
    EpollMainQueue queue;
    BenchLibrary library(queue, config.path());
    std::vector<double> held;
    std::vector<double> processor;
    int step = 0;
    for ([[maybe_unused]] const auto& round : state) {
        const double before = threadMilliseconds();
        held.push_back(milliseconds([&] {
            change(library.sounds, ++step);
            queue.dispatch();
        }));
        processor.push_back(threadMilliseconds() - before);
        std::this_thread::sleep_for(std::chrono::milliseconds(16));
    }
    state.counters["held_median_ms"] = quantile(held, 0.5);
    state.counters["held_worst_ms"] = quantile(held, 1);
    state.counters["cpu_worst_ms"] = quantile(processor, 1);
}
BENCHMARK_CAPTURE(changeAmongAThousandThemes, volume,
                  [](SoundManager& manager, int step) {
                      manager.setVolume(static_cast<float>(step % 100) / 100, "slap");
                  })
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(changeAmongAThousandThemes, path,
                  [](SoundManager& manager, int step) {
                      manager.setPath("/sound " + std::to_string(step), "slap");
                  })
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(changeAmongAThousandThemes, rename,
                  [](SoundManager& manager, int step) {
                      manager.renameCustomTheme(manager.customThemes.back().id,
                                                std::to_string(step));
                  })
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(changeAmongAThousandThemes, select,
                  [](SoundManager& manager, int step) {
                      manager.setCustomTheme(
                          manager.customThemes.at(static_cast<std::size_t>(step) % kThemes));
                  })
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(changeAmongAThousandThemes, createAndDelete,
                  [](SoundManager& manager, int step) {
                      if (step % 2 == 0) {
                          manager.deleteCustomTheme(*manager.activeCustomThemeID);
                      } else {
                          manager.createCustomTheme("new");
                      }
                  })
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace chimewerk

BENCHMARK_MAIN();
