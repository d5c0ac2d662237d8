#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Decides when changes are written: a tenth of a second after the first of them, all that have come
/// meanwhile in one, or while they are held back, within five seconds; never two writes at once; after a
/// failure again and again, at ever longer intervals and at the next change. Main thread only.
class WriteSchedule {
public:
    using Done = std::function<void(bool written)>;
    /// Begins to write the state of this moment and calls `done` once on the main thread, later, if the
    /// schedule is still there.
    using Write = std::function<void(Done done)>;

    WriteSchedule(MainQueue& queue, Write write) : queue_(queue), write_(std::move(write)) {}

    /// There is something new to write.
    void changed();

    /// Holds changes back until the result, and every other such, is gone; it may outlive the schedule.
    [[nodiscard]] std::shared_ptr<const void> hold() const { return hold_; }

    /// Whether there are changes that no finished write covers.
    bool hasUnwritten() const { return written_ != changes_; }
    /// All that has changed so far has been written by other means.
    void wroteAll() { written_ = changes_; }

private:
    void wakeIn(Seconds delay);
    void wake();
    void begin();
    void ended(bool written, std::uint64_t covered);

    MainQueue& queue_;
    const Write write_;
    std::uint64_t changes_ = 0;
    std::uint64_t written_ = 0;
    /// The wake-up that counts; earlier ones do nothing.
    std::uint64_t wakeUp_ = 0;
    /// A wake-up for a change is on its way.
    bool soon_ = false;
    /// How often it has been put off because changes are held back.
    int putOff_ = 0;
    /// Changes are held back while others have a part in it.
    const std::shared_ptr<const char> hold_ = std::make_shared<const char>();
    bool writing_ = false;
    /// A write was due while another went on.
    bool again_ = false;
    int failures_ = 0;
    Lifeline lifeline_;
};

}  // namespace chimewerk
