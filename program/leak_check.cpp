// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Only in builds with the address sanitizer.
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <thread>

namespace {

/// Returns the number of this process's threads.
std::uintmax_t threads() {
    constexpr int kLinksOfAnEmptyFolder = 2;
    return std::filesystem::hard_link_count("/proc/self/task") - kLinksOfAnEmptyFolder;
}

/// Waits until all other threads have ended, for a second at most. Destroyed after the toolkit's
/// connection to the bus and before the toolkit's library: a thread that ends later than the library
/// can no longer free what the library keeps for it, which counts as a leak.
struct EndOfThreads {
    ~EndOfThreads() {
        for (int i = 0; threads() > 1 && i < 1000; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
};

const EndOfThreads endOfThreads;

}  // namespace
