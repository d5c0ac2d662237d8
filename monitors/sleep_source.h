#pragma once

#include <cstdint>
#include <functional>

namespace chimewerk {

// The types of the system's power messages that mean something to the program; every other type is a
// question that may be answered at once.

/// The system is about to sleep and waits for the answer.
inline constexpr std::int64_t kIOPMSystemWillSleep = 0xE0000280;
/// The system begins to wake.
inline constexpr std::int64_t kIOPMSystemWillPowerOn = 0xE0000320;
/// The system is awake again.
inline constexpr std::int64_t kIOPMSystemHasPoweredOn = 0xE0000300;

/// Tells when the system goes to sleep and wakes, and lets it wait a moment. Main thread only.
class SleepSource {
public:
    /// `argument` names the message in the answer to it.
    using Handler = std::function<void(std::uint32_t messageType, std::intptr_t argument)>;

    virtual ~SleepSource() = default;

    /// Calls `handler` on the main thread for each power message, from now until the object is destroyed.
    /// Called once. False, and no calls, where such messages cannot be had.
    virtual bool registerHandler(Handler handler) = 0;

    /// Answers the message that had this argument: as far as this program is concerned the system may go on.
    /// An answer that is no longer waited for changes nothing.
    virtual void allowPowerChange(std::intptr_t argument) = 0;
};

}  // namespace chimewerk
