// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"

namespace chimewerk {

/// Repeats the key that was pressed last, after a delay and then at an interval, until `stop()`.
/// Uses one kernel timer and allocates nothing per key. Main thread only; must not be destroyed
/// from within its callback.
class KeyRepeat {
public:
    struct Settings {
        /// Zero for no repeats.
        std::chrono::milliseconds delay{0};
        std::chrono::milliseconds interval{0};
        /// Whether each key repeats: one bit per key, the lowest bit first.
        std::array<std::uint8_t, 32> keys{};

        bool operator==(const Settings&) const = default;
    };

    /// Calls `onRepeat` for each repeat, which stops the repetition if the key is up again; missed
    /// repeats are skipped. The queue must outlive the object.
    KeyRepeat(EpollMainQueue& queue, std::function<void(std::uint8_t key)> onRepeat);

    /// Other settings than the last ones end the repetition.
    void setSettings(const Settings& settings);
    void press(std::uint8_t key);
    /// Stops the repeats of this key. They stop without it, too, at the latest with the next one.
    void release(std::uint8_t key);
    void stop();

private:
    void setTimer(std::chrono::milliseconds delay, std::chrono::milliseconds interval);

    const std::function<void(std::uint8_t)> onRepeat_;
    Settings settings_;
    std::uint8_t held_ = 0;
    FileDescriptor timer_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;  // Destroyed before the timer that it watches
};

}  // namespace chimewerk
