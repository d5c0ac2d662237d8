#pragma once

#include <memory>

#include "linux/base/epoll_main_queue.h"
#include "linux/base/file_descriptor.h"
#include "monitors/lid_angle_monitor.h"

namespace chimewerk {

/// A lid sensor that is a HID device: the first among the kernel's hidraw devices that has the right usage
/// and may be opened, which needs the udev rule that comes with the program.
///
/// Does not notice by itself when one is plugged in: `open()` looks again. When the device goes away the
/// source closes itself and tells so.
class HidrawLidSensorSource final : public LidSensorSource {
public:
    /// The queue outlives the source.
    explicit HidrawLidSensorSource(EpollMainQueue& queue) : queue_(queue) {}

    bool open(ReportHandler onReport, FoundHandler onFound) override;
    void close() override;

    /// Whether the machine has such a device, whoever may open it.
    static bool isPresent();

private:
    void receive();

    EpollMainQueue& queue_;
    ReportHandler onReport_;
    FoundHandler onFound_;
    FileDescriptor device_;
    std::unique_ptr<EpollMainQueue::Watch> watch_;
};

}  // namespace chimewerk
