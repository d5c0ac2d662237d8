// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <utility>

namespace chimewerk {

/// A source of readings that a rule takes at an interval, with a `Poller`. Main thread only.
class PolledSource {
public:
    virtual ~PolledSource() = default;

    /// Returns whether the source announces it when a reading may differ from the last one that
    /// was taken. While it does not, it must be read at each interval.
    virtual bool announcesChanges() const { return false; }

    /// Sets what an announcement calls, on the main thread. It is also called when the source can
    /// no longer announce changes. After a call there may be no other one until the next reading.
    void onAnnouncement(std::function<void()> announced) { announced_ = std::move(announced); }

protected:
    void announce() const {
        if (announced_) {
            announced_();
        }
    }

private:
    std::function<void()> announced_;
};

}  // namespace chimewerk
