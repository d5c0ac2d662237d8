// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/hidraw_lid_sensor_source.h"

#include <fcntl.h>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "linux/base/file_reading.h"
#include "linux/lid/hid_lid_sensor.h"
#include "linux/links/udev_devices.h"

namespace chimewerk {

namespace {

/// Further reports wait for the next turn of the main loop.
constexpr int kMaxReportsPerTurn = 64;

struct Candidate {
    std::string node;
    HidCollection sensor;
};

std::vector<Candidate> candidates() {
    std::vector<Candidate> found;
    for (const UdevDevice& device : udevDevices("hidraw")) {
        const std::string descriptor =
            readText(device.parentFolder + "/report_descriptor").value_or("");
        const std::vector<std::uint8_t> bytes(descriptor.begin(), descriptor.end());
        if (auto sensor = findLidSensor(bytes)) {
            found.push_back({device.node, *std::move(sensor)});
        }
    }
    return found;
}

class HidrawFeatureReports final : public HidFeatureReports {
public:
    explicit HidrawFeatureReports(int device) : device_(device) {}

    std::vector<std::uint8_t> read(std::uint8_t reportId) override {
        std::vector<std::uint8_t> report(kLongest);
        report[0] = reportId;
        const int size = ioctl(device_, HIDIOCGFEATURE(kLongest), report.data());
        report.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
        return report;
    }
    void write(const std::vector<std::uint8_t>& report) override {
        ioctl(device_, HIDIOCSFEATURE(report.size()), report.data());
    }

private:
    static constexpr std::size_t kLongest = 4096;
    const int device_;
};

/// Opens the device for reading and writing, which is needed to wake it, or else for reading only:
/// it may be awake already.
FileDescriptor openNode(const std::string& node) {
    constexpr int kFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    FileDescriptor device(::open(node.c_str(), O_RDWR | kFlags));
    return device ? std::move(device) : FileDescriptor(::open(node.c_str(), O_RDONLY | kFlags));
}

}  // namespace

bool HidrawLidSensorSource::isPresent() {
    return !candidates().empty();
}

bool HidrawLidSensorSource::open(AngleHandler onAngle, FoundHandler onFound) {
    onAngle_ = std::move(onAngle);
    onFound_ = std::move(onFound);
    if (watch_) {
        return true;
    }
    for (const Candidate& candidate : candidates()) {
        FileDescriptor device = openNode(candidate.node);
        if (!device) {
            continue;
        }
        watch_ = queue_.watch(device.get(), [this] { receive(); });
        if (watch_) {
            device_ = std::move(device);
            sensor_ = candidate.sensor;
            wakes_.emplace(queue_, MachineTimes(), [this] { wakeSensor(); });
            wakeSensor();
            return true;
        }
    }
    return false;
}

std::unique_ptr<HidFeatureReports> HidrawLidSensorSource::openHidraw(int device) {
    return std::make_unique<HidrawFeatureReports>(device);
}

void HidrawLidSensorSource::wakeSensor() {
    // A descriptor of its own: the source may be closed meanwhile.
    auto device = std::make_shared<const FileDescriptor>(fcntl(device_.get(), F_DUPFD_CLOEXEC, 0));
    worker_.post(
        [device, sensor = sensor_, openReports = openReports_](const std::stop_token& stop) {
            const auto reports = openReports(device->get());
            wakeLidSensor(sensor, *reports, stop);
        });
}

void HidrawLidSensorSource::close() {
    wakes_ = std::nullopt;
    watch_ = nullptr;
    device_ = FileDescriptor();
    onAngle_ = nullptr;
    onFound_ = nullptr;
}

void HidrawLidSensorSource::receive() {
    // A longer report is truncated; the angle is at its beginning.
    std::array<std::uint8_t, 64> report{};
    for (int i = 0; i < kMaxReportsPerTurn; ++i) {
        const ssize_t size = read(device_.get(), report.data(), report.size());
        if (size > 0) {
            const auto bytes = std::span(report).first(static_cast<std::size_t>(size));
            if (const std::optional<float> degrees = decodeLidReport(bytes)) {
                onAngle_(*degrees);
            }
        } else if (size < 0 && errno == EINTR) {
            continue;
        } else if (size < 0 && errno == EAGAIN) {
            return;
        } else {                                    // The device is gone.
            const FoundHandler onFound = onFound_;  // The handler may open or close this source.
            close();
            onFound(false);
            return;
        }
    }
}

}  // namespace chimewerk
