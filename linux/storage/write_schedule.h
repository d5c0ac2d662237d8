// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "platform/lifeline.h"
#include "platform/main_queue.h"

namespace chimewerk {

/// Decides when changes are written: together, a tenth of a second after the first of them, or
/// within five seconds while they are held back. Never two writes at once. Retries after a failure,
/// at growing intervals and at the next change. Main thread only.
class WriteSchedule {
public:
    using Done = std::function<void(bool written)>;
    /// Begins to write the present state. Calls `done` once, later, on the main thread; the
    /// schedule may be gone by then.
    using Write = std::function<void(Done done)>;

    WriteSchedule(MainQueue& queue, Write write) : queue_(queue), write_(std::move(write)) {}

    /// To be called after each change.
    void changed();

    /// Holds changes back until all results of this are destroyed. They may outlive the schedule.
    [[nodiscard]] std::shared_ptr<const void> hold() const { return hold_; }

    /// Whether there are changes that no finished write contains.
    bool hasUnwritten() const { return written_ != changes_; }
    /// To be called when all changes so far have been written without the schedule.
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
    /// The latest wake-up; earlier ones do nothing.
    std::uint64_t wakeUp_ = 0;
    /// A wake-up for a change is queued.
    bool soon_ = false;
    /// How often it has been delayed because changes are held back.
    int putOff_ = 0;
    /// Changes are held back while others share it.
    const std::shared_ptr<const char> hold_ = std::make_shared<const char>();
    bool writing_ = false;
    /// A write fell due during another.
    bool again_ = false;
    int failures_ = 0;
    Lifeline lifeline_;
};

}  // namespace chimewerk
