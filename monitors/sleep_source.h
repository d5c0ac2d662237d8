// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>

namespace chimewerk {

// The power messages that the program acts on. Every other type is answered at once.

/// The system is about to sleep and waits for the answer.
inline constexpr std::int64_t kIOPMSystemWillSleep = 0xE0000280;
/// The system begins to wake.
inline constexpr std::int64_t kIOPMSystemWillPowerOn = 0xE0000320;
/// The system is awake again.
inline constexpr std::int64_t kIOPMSystemHasPoweredOn = 0xE0000300;

/// Reports when the system goes to sleep and wakes, and can delay sleep briefly. Main thread only.
class SleepSource {
public:
    /// `argument` identifies the message in `allowPowerChange()`.
    using Handler = std::function<void(std::uint32_t messageType, std::intptr_t argument)>;

    virtual ~SleepSource() = default;

    /// Calls `handler` on the main thread for each power message until the object is destroyed.
    /// Call once. Returns false, and makes no calls, if power messages are not available.
    virtual bool registerHandler(Handler handler) = 0;

    /// Answers the message that had this argument: this program no longer holds up the power
    /// change. A late answer has no effect.
    virtual void allowPowerChange(std::intptr_t argument) = 0;
};

}  // namespace chimewerk
