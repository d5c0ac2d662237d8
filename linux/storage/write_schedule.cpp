// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/storage/write_schedule.h"

#include <algorithm>
#include <cmath>

namespace chimewerk {

namespace {

constexpr Seconds kDelay{0.1};
/// With the first delay, five seconds in all.
constexpr int kMostPutOff = 49;
constexpr Seconds kFirstRetry{1};
constexpr Seconds kLongestRetry{60};

}  // namespace

void WriteSchedule::changed() {
    ++changes_;
    if (!soon_) {
        soon_ = true;
        putOff_ = 0;
        wakeIn(kDelay);
    }
}

void WriteSchedule::wake() {
    if (soon_ && hold_.use_count() > 1 && putOff_ < kMostPutOff) {
        ++putOff_;
        wakeIn(kDelay);
        return;
    }
    begin();
}

void WriteSchedule::wakeIn(Seconds delay) {
    queue_.postAfter(delay, lifeline_.guard([this, wakeUp = ++wakeUp_] {
        if (wakeUp == wakeUp_) {
            wake();
        }
    }));
}

void WriteSchedule::begin() {
    soon_ = false;
    if (writing_) {
        again_ = true;
        return;
    }
    if (!hasUnwritten()) {
        return;
    }
    writing_ = true;
    write_(lifeline_.guard([this, covered = changes_](bool written) { ended(written, covered); }));
}

void WriteSchedule::ended(bool written, std::uint64_t covered) {
    writing_ = false;
    if (written) {
        failures_ = 0;
        written_ = std::max(written_, covered);
    } else if (!soon_) {
        wakeIn(std::min(kFirstRetry * std::exp2(std::min(failures_++, 10)), kLongestRetry));
    }
    if (std::exchange(again_, false)) {
        begin();
    }
}

}  // namespace chimewerk
