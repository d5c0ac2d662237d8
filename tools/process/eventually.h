// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <thread>

namespace chimewerk {

/// Checks `condition` every 10 ms until it holds. Returns false if it does not hold within
/// `patience`. For events in other processes.
template <typename Condition>
bool eventually(Condition condition, std::chrono::milliseconds patience = std::chrono::seconds(5)) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace chimewerk
