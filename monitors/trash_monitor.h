// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/clock.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// What the trash monitor sees of the user's trash. Main thread only.
class TrashSource {
public:
    using CountCompletion = std::function<void(std::optional<std::int64_t> count)>;

    virtual ~TrashSource() = default;

    /// When an item last went into the trash folder or left it, in seconds since 1970-01-01
    /// UTC; 0 when that cannot be read, as when there is no trash folder yet. Costs one look at
    /// the folder.
    virtual double modificationTime() const = 0;

    /// Counts the items in the trash without holding up the caller and hands the number to
    /// `completion` on the main thread, later; none when it cannot be had. A count that is under
    /// way when the source is destroyed is given up without a completion.
    virtual void countItems(CountCompletion completion) = 0;
};

/// Reports an item going into the trash and the trash being emptied. A change of the folder's time,
/// cheap to see, opens a pending period; a count of the items, which is slow, decides it. Main
/// thread only.
class TrashMonitor {
public:
    TrashMonitor(MainQueue& queue, const Clock& clock, TrashSource& trash);

    /// An item went into the trash. At most once a second.
    std::function<void()> onAdd;
    /// The trash was emptied.
    std::function<void()> onEmpty;

    /// Begins to poll the folder every 0.5 s. Call it once before `stop()`.
    void start();

    /// Ends the polling. A count that is under way still completes.
    void stop() { poller_.stop(); }

private:
    void poll();
    void decide(std::optional<std::int64_t> count);
    /// Whether the last add is long enough ago for another; notes this moment as the last add
    /// if so.
    bool takeAddSlot();
    void fetchCount(void (TrashMonitor::*completion)(std::optional<std::int64_t>));
    void takeFirstCount(std::optional<std::int64_t> count) { lastCount_ = count.value_or(0); }

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
