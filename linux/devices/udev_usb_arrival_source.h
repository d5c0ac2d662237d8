// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/udev_monitor.h"
#include "monitors/usb_monitor.h"

namespace chimewerk {

/// Reports USB devices as udev announces them, but not their interfaces. Ignores events that udev
/// was asked to repeat. Without udev's events it reports nothing. If so many arrive at once that
/// some events are lost, the others still count.
class UdevUsbArrivalSource final : public UsbArrivalSource {
public:
    /// The queue must outlive the source.
    explicit UdevUsbArrivalSource(EpollMainQueue& queue) : queue_(queue) {}

    bool open(std::function<void()> arrived) override;
    void close() override { monitor_ = nullptr; }

private:
    EpollMainQueue& queue_;
    std::unique_ptr<UdevMonitor> monitor_;
};

}  // namespace chimewerk
