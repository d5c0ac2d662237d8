// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/clock.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/polled_source.h"
#include "platform/poller.h"

namespace chimewerk {

/// Reports changes of the user's trash and counts its items. Main thread only.
class TrashSource : public PolledSource {
public:
    using CountCompletion = std::function<void(std::optional<std::int64_t> count)>;

    /// Returns whether a disk with its own trash may have appeared or disappeared since the
    /// last call. The number of items has then changed, although nobody has put one in or
    /// emptied the trash.
    virtual bool volumesChanged() { return false; }

    /// Returns a number that changes whenever an item is added to the trash or removed from it: the
    /// time of the last such change, in seconds since 1970-01-01 UTC, or the sum of these times if
    /// the trash has several folders; 0 if that cannot be read, for example if there is no trash
    /// folder yet. Costs one file status call per folder.
    virtual double modificationTime() = 0;

    /// Counts the items in the trash without blocking. Calls `completion` on the main thread,
    /// later, with the number; none if it is unavailable. If the source is destroyed first,
    /// `completion` is not called.
    virtual void countItems(CountCompletion completion) = 0;
};

/// Reports that an item was put into the trash and that the trash was emptied. A changed folder
/// time, which is cheap to read, starts a pending period; a count of the items, which is slow, then
/// decides what happened. Main thread only.
class TrashMonitor {
public:
    TrashMonitor(MainQueue& queue, const Clock& clock, TrashSource& trash);

    /// Called when an item was put into the trash, at most once a second.
    std::function<void()> onAdd;
    /// Called when the trash was emptied.
    std::function<void()> onEmpty;

    /// Starts polling the folder every 0.5 s, while it may have changed or a change is undecided.
    /// Call once before `stop()`.
    void start();

    /// Stops polling. A running count still completes.
    void stop() { poller_.stop(); }

private:
    void poll();
    void decide(std::optional<std::int64_t> count);
    /// Returns whether the last add was reported more than a second ago; if so, records a new one.
    bool takeAddSlot();
    void fetchCount(void (TrashMonitor::*completion)(std::optional<std::int64_t>));
    void takeFirstCount(std::optional<std::int64_t> count) { lastCount_ = count.value_or(0); }
    void takeNewCount(std::optional<std::int64_t> count) {
        lastCount_ = count.value_or(lastCount_);
    }

    const Clock& clock_;
    TrashSource& trash_;
    double lastMtime_ = 0;
    std::int64_t lastCount_ = 0;
    bool fetching_ = false;
    bool pending_ = false;
    WallTime pendingSince_ = kDistantPast;
    WallTime lastAddFired_ = kDistantPast;
    Poller poller_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
