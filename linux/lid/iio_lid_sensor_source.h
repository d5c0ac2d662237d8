#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "linux/base/worker.h"
#include "monitors/lid_angle_monitor.h"
#include "platform/lifeline.h"
#include "platform/main_queue.h"
#include "platform/poller.h"

namespace chimewerk {

/// Where the kernel tells the angle of a hinge.
struct IioHinge {
    using Report = std::array<std::uint8_t, 3>;

    /// The file with the angle as the sensor has it.
    std::string rawPath;
    /// Degrees for each unit of the raw value, once the offset has been added to it.
    double degreesPerUnit;
    double offset;

    /// The reading as the lid's HID sensor would report it; none for an angle that no lid can have.
    std::optional<Report> report(double raw) const;
};

/// The first industrial-I/O device of the machine that measures the angle of a hinge; none when there is
/// none.
std::optional<IioHinge> findIioHinge();

/// A lid sensor that the kernel serves as an industrial-I/O device. It has no events to wait for, so it is
/// read every 0.25 s and each reading becomes a report like those of the HID sensor; angles that no lid can
/// have become none. The reading is done on a worker, since the kernel may have to wake the sensor for it and
/// wait.
///
/// Does not notice by itself when a sensor appears: `open()` looks again. When the device goes away the
/// source closes itself and tells so.
class IioLidSensorSource final : public LidSensorSource {
public:
    /// The queue outlives the source.
    explicit IioLidSensorSource(MainQueue& queue) : queue_(queue), poller_(queue) {}

    bool open(ReportHandler onReport, FoundHandler onFound) override;
    void close() override;

private:
    void readAngle();
    void take(std::optional<double> raw);

    MainQueue& queue_;
    ReportHandler onReport_;
    FoundHandler onFound_;
    std::optional<IioHinge> hinge_;
    bool reading_ = false;
    Poller poller_;
    Worker worker_;
    Lifeline lifeline_;
};

}  // namespace chimewerk
