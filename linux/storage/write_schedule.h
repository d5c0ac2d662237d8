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

/// Decides when changes are written: together, a tenth of a second after the first one, or within
/// five seconds while they are delayed. Never runs two writes at once. Retries after a failure, at
/// growing intervals and at the next change. Main thread only.
class WriteSchedule {
public:
    using Done = std::function<void(bool written)>;
    /// Starts writing the current state. Calls `done` once, later, on the main thread; the schedule
    /// may have been destroyed by then.
    using Write = std::function<void(Done done)>;

    WriteSchedule(MainQueue& queue, Write write) : queue_(queue), write_(std::move(write)) {}

    /// Call this after each change.
    void changed();

    /// Delays writing until all returned objects are destroyed. They may outlive the schedule.
    [[nodiscard]] std::shared_ptr<const void> hold() const { return hold_; }

    /// Returns whether there are changes that no finished write contains.
    bool hasUnwritten() const { return written_ != changes_; }
    /// Call this when all changes so far have been written without the schedule.
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
    /// Whether a wake-up for a change is queued.
    bool soon_ = false;
    /// How often that wake-up has been put off.
    int putOff_ = 0;
    /// Writing is delayed while this pointer is shared.
    const std::shared_ptr<const char> hold_ = std::make_shared<const char>();
    bool writing_ = false;
    /// Whether another write is due after the current one.
    bool again_ = false;
    int failures_ = 0;
    Lifeline lifeline_;
};

}  // namespace chimewerk
