// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/udev_monitor.h"
#include "monitors/lid_angle_monitor.h"
#include "platform/lifeline.h"
#include "platform/source_report.h"

namespace chimewerk {

/// Tries the kinds of lid sensors in order and uses the first that opens; the last one is silent.
/// When a device that may be a sensor is plugged in or out, searches again from the top. Without
/// udev's events, it only finds a sensor that is present when the table is opened.
class LidSensorTable final : public LidSensorSource, public ReportsItself {
public:
    using Rows = std::vector<std::unique_ptr<LidSensorSource>>;

    /// Returns the rows of this program: hidraw, industrial I/O, none. The queue must outlive them.
    static Rows rows(EpollMainQueue& queue);

    /// `rows` must not be empty. The queue must outlive the table.
    LidSensorTable(EpollMainQueue& queue, Rows rows);

    bool open(AngleHandler onAngle, FoundHandler onFound) override;
    void close() override;
    SourceReport report() override;

private:
    bool choose();
    void chooseAgain();
    FoundHandler rowHandler();

    EpollMainQueue& queue_;
    Rows rows_;
    LidSensorSource* current_;
    bool found_ = false;
    AngleHandler onAngle_;
    FoundHandler onFound_;
    std::unique_ptr<UdevMonitor> devices_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
