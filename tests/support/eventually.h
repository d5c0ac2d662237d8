#pragma once

#include <chrono>
#include <thread>

namespace chimewerk {

/// Looks every 10 ms, at most for so long, whether something of the real world holds; true as soon as it
/// does.
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
