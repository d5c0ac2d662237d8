#pragma once

#include <memory>
#include <vector>

#include "linux/base/epoll_main_queue.h"
#include "linux/links/udev_monitor.h"
#include "monitors/lid_angle_monitor.h"
#include "platform/lifeline.h"

namespace chimewerk {

/// The ways to a lid sensor in the order in which they are tried, ending in one that stays silent; the first
/// that opens is used. When a device that may be a sensor comes or goes, the table is gone through again from
/// the top: a sensor may be plugged in later, give way to a better one, and come back. Without udev's events
/// only the sensor that is there when the table is opened is found.
class LidSensorTable final : public LidSensorSource {
public:
    using Rows = std::vector<std::unique_ptr<LidSensorSource>>;

    /// The rows of this program: hidraw, industrial I/O, none. The queue outlives them.
    static Rows rows(EpollMainQueue& queue);

    /// There is at least one row; the queue outlives the table.
    LidSensorTable(EpollMainQueue& queue, Rows rows);

    bool open(ReportHandler onReport, FoundHandler onFound) override;
    void close() override;

private:
    bool choose();
    void chooseAgain();
    FoundHandler rowHandler();

    EpollMainQueue& queue_;
    Rows rows_;
    LidSensorSource* current_;
    bool found_ = false;
    ReportHandler onReport_;
    FoundHandler onFound_;
    std::unique_ptr<UdevMonitor> devices_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
