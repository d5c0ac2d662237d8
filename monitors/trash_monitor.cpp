// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/trash_monitor.h"

#include <utility>

namespace chimewerk {

namespace {

constexpr Seconds kPollInterval{0.5};
/// A change that is still undecided after this time counts as an add.
constexpr Seconds kCountDeadline{3.0};
constexpr Seconds kAddSpacing{1.0};

}  // namespace

TrashMonitor::TrashMonitor(MainQueue& queue, const Clock& clock, TrashSource& trash)
    : clock_(clock), trash_(trash), poller_(queue) {}

void TrashMonitor::start() {
    fetchCount(&TrashMonitor::takeFirstCount);
    lastMtime_ = trash_.modificationTime();
    poller_.start(kPollInterval, trash_, [this] { poll(); });
}

void TrashMonitor::poll() {
    if (trash_.volumesChanged()) {
        fetchCount(&TrashMonitor::takeNewCount);
        lastMtime_ = trash_.modificationTime();
    }
    // Any difference is a change, even to an earlier time; exact comparison is intended.
    const double modified = trash_.modificationTime();
    if (modified < lastMtime_ || modified > lastMtime_) {
        lastMtime_ = modified;
        if (!pending_) {
            pending_ = true;
            pendingSince_ = clock_.now();
        }
    }
    if (!pending_) {
        return;
    }
    poller_.wake();  // The deadline passes without any change of the folder.
    if (fetching_) {
        return;
    }
    if (hasPassed(kCountDeadline, pendingSince_, clock_.now())) {
        pending_ = false;
        if (takeAddSlot() && onAdd) {
            onAdd();
        }
        return;
    }
    fetching_ = true;
    fetchCount(&TrashMonitor::decide);
}

void TrashMonitor::decide(std::optional<std::int64_t> count) {
    fetching_ = false;
    if (!count) {
        return;  // Still pending: the next poll counts again, or gives up at the deadline.
    }
    pending_ = false;
    const std::int64_t before = std::exchange(lastCount_, *count);
    if (*count > before) {
        if (takeAddSlot() && onAdd) {
            onAdd();
        }
    } else if (*count == 0 && before > 0 && onEmpty) {
        onEmpty();
    }
}

bool TrashMonitor::takeAddSlot() {
    const WallTime now = clock_.now();
    if (!hasPassed(kAddSpacing, lastAddFired_, now)) {
        return false;
    }
    lastAddFired_ = now;
    return true;
}

void TrashMonitor::fetchCount(void (TrashMonitor::*completion)(std::optional<std::int64_t>)) {
    trash_.countItems(lifeline_.guard(
        [this, completion](std::optional<std::int64_t> count) { (this->*completion)(count); }));
}

}  // namespace chimewerk
