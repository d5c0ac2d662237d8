// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/wake_watch.h"
#include "linux/devices/usb_arrivals.h"
#include "linux/links/udev_monitor.h"
#include "monitors/usb_monitor.h"
#include "platform/source_report.h"

namespace chimewerk {

/// Reports the USB devices that udev announces and that the user has plugged in; see
/// `UsbArrivals`. Ignores the interfaces of devices, and events that udev was asked to repeat.
/// Without udev's events it reports nothing. If so many arrive at once that some events are lost,
/// the others still count.
class UdevUsbArrivalSource final : public UsbArrivalSource, public ReportsItself {
public:
    /// The queue must outlive the source.
    explicit UdevUsbArrivalSource(EpollMainQueue& queue, MachineTimes times = {})
        : queue_(queue), times_(std::move(times)), wakes_(queue, times_) {}

    bool open(std::function<void()> arrived) override;
    void close() override { monitor_ = nullptr; }
    SourceReport report() override;

private:
    bool isArrival(const UdevEvent& event);

    EpollMainQueue& queue_;
    const MachineTimes times_;
    WakeWatch wakes_;
    UsbArrivals arrivals_;
    std::unique_ptr<UdevMonitor> monitor_;
};

}  // namespace chimewerk
