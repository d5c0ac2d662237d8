// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "linux/base/wake_watch.h"
#include "linux/base/worker.h"
#include "linux/lid/hid_lid_sensor.h"
#include "monitors/lid_angle_monitor.h"

namespace chimewerk {

/// A lid sensor that is a HID device: the first hidraw device with the right usage that can be
/// opened, which needs the udev rule that comes with the program. Ignores reports without an angle.
/// A worker wakes the sensor, because a bad device answers late or never; it does so again after
/// each suspension of the machine.
///
/// Does not notice new devices; call `open()` again to search. When the device is unplugged, the
/// source closes itself and calls `onFound(false)`.
class HidrawLidSensorSource final : public LidSensorSource {
public:
    /// Makes the feature reports of an open device. Called, and its result used, by the worker.
    using OpenReports = std::function<std::unique_ptr<HidFeatureReports>(int device)>;

    /// Returns the reports of a hidraw device.
    static std::unique_ptr<HidFeatureReports> openHidraw(int device);

    /// The queue must outlive the source.
    explicit HidrawLidSensorSource(EpollMainQueue& queue, OpenReports openReports = openHidraw)
        : queue_(queue), openReports_(std::move(openReports)) {}

    bool open(AngleHandler onAngle, FoundHandler onFound) override;
    void close() override;
    std::string_view name() const override { return "hinge sensor, hidraw"; }

    /// Returns whether the machine has such a device, even if it cannot be opened.
    static bool isPresent();

    /// Turns the sensor's reports on, as after a wake. Does not block.
    void wakeSensor();

private:
    void receive();

    EpollMainQueue& queue_;
    const OpenReports openReports_;
    AngleHandler onAngle_;
    FoundHandler onFound_;
    FileDescriptor device_;
    HidCollection sensor_;
    std::optional<WakeWatch> wakes_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
    Worker worker_;
};

}  // namespace chimewerk
