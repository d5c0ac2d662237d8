// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/udev_monitor.h"
#include "monitors/usb_monitor.h"

namespace chimewerk {

/// USB devices as udev announces them, without their interfaces. Events that udev was asked to
/// repeat are ignored. Without udev's events nothing arrives. When so many come at once that some
/// are lost, the rest still counts.
class UdevUsbArrivalSource final : public UsbArrivalSource {
public:
    /// The queue outlives the source.
    explicit UdevUsbArrivalSource(EpollMainQueue& queue) : queue_(queue) {}

    bool open(std::function<void()> arrived) override;
    void close() override { monitor_ = nullptr; }

private:
    EpollMainQueue& queue_;
    std::unique_ptr<UdevMonitor> monitor_;
};

}  // namespace chimewerk
