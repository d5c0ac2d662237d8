// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "monitors/lid_angle_monitor.h"

namespace chimewerk {

/// A lid sensor that is a HID device: the first hidraw device with the right usage that can be
/// opened, which needs the udev rule that comes with the program. Ignores reports without an angle.
///
/// Does not notice new devices; call `open()` again to search. When the device is unplugged, the
/// source closes itself and calls `onFound(false)`.
class HidrawLidSensorSource final : public LidSensorSource {
public:
    /// The queue must outlive the source.
    explicit HidrawLidSensorSource(EpollMainQueue& queue) : queue_(queue) {}

    bool open(AngleHandler onAngle, FoundHandler onFound) override;
    void close() override;

    /// Returns whether the machine has such a device, even if it cannot be opened.
    static bool isPresent();

private:
    void receive();

    EpollMainQueue& queue_;
    AngleHandler onAngle_;
    FoundHandler onFound_;
    FileDescriptor device_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
