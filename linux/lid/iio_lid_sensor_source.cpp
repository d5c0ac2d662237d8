// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/iio_lid_sensor_source.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <stop_token>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "linux/base/sysfs.h"
#include "linux/links/udev_devices.h"

namespace chimewerk {

namespace {

constexpr Seconds kReadInterval{0.25};
/// Some drivers report 500 when the angle is unknown.
constexpr double kMaxAngle = 360.0;
constexpr double kDegreesPerRadian = 180.0 / std::numbers::pi;
constexpr std::string_view kRawSuffix = "_raw";

/// Returns the angle channels of a device, such as "in_angl" and "in_angl0", in order.
std::vector<std::string> angleChannels(const std::string& folder) {
    std::vector<std::string> channels;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (name.starts_with("in_angl") && name.ends_with(kRawSuffix)) {
            name.resize(name.size() - kRawSuffix.size());
            channels.push_back(std::move(name));
        }
    }
    std::ranges::sort(channels);
    return channels;
}

/// Returns the channel labelled "hinge"; if no channel has a label, the first one of a device whose
/// name contains "hinge" or "lid". Other devices have angle channels too.
std::optional<std::string> hingeChannel(const std::string& folder) {
    const std::vector<std::string> channels = angleChannels(folder);
    bool labelled = false;
    for (const std::string& channel : channels) {
        const auto label =
            readSysfsLine(std::string(folder).append("/").append(channel).append("_label"));
        if (label == "hinge") {
            return channel;
        }
        labelled |= label.has_value();
    }
    const std::string device = readSysfsLine(folder + "/name").value_or("");
    const bool isHinge =
        device.find("hinge") != std::string::npos || device.find("lid") != std::string::npos;
    return isHinge && !labelled && !channels.empty() ? std::optional(channels.front())
                                                     : std::nullopt;
}

/// Reads a property of one channel, else the property that the device's angle channels share.
std::optional<double> channelNumber(const std::string& folder, const std::string& channel,
                                    const char* property) {
    const auto own = readSysfsNumber(folder + '/' + channel + property);
    return own ? own : readSysfsNumber(folder + "/in_angl" + property);
}

}  // namespace

std::optional<float> IioHinge::degrees(double raw) const {
    const double angle = (raw + offset) * degreesPerUnit;
    const bool isPossible = angle >= 0 && angle <= kMaxAngle;
    return isPossible ? std::optional(static_cast<float>(std::round(angle))) : std::nullopt;
}

std::optional<IioHinge> findIioHinge() {
    for (const UdevDevice& device : udevDevices("iio")) {
        const std::optional<std::string> channel = hingeChannel(device.folder);
        if (!channel) {
            continue;
        }
        std::string raw = device.folder + '/' + *channel + std::string(kRawSuffix);
        if (access(raw.c_str(), R_OK) == 0) {
            // Scaled values are in radians; without a scale, raw values are in degrees.
            const auto scale = channelNumber(device.folder, *channel, "_scale");
            return IioHinge{
                .rawPath = std::move(raw),
                .degreesPerUnit = scale ? *scale * kDegreesPerRadian : 1.0,
                .offset = channelNumber(device.folder, *channel, "_offset").value_or(0)};
        }
    }
    return std::nullopt;
}

bool IioLidSensorSource::open(AngleHandler onAngle, FoundHandler onFound) {
    onAngle_ = std::move(onAngle);
    onFound_ = std::move(onFound);
    const bool wasOpen = hinge_.has_value();
    hinge_ = findIioHinge();
    if (hinge_ && !wasOpen) {
        poller_.start(kReadInterval, [this] { readAngle(); });
    } else if (!hinge_) {
        close();
    }
    return hinge_.has_value();
}

void IioLidSensorSource::close() {
    poller_.stop();
    hinge_ = std::nullopt;
    onAngle_ = nullptr;
    onFound_ = nullptr;
}

void IioLidSensorSource::readAngle() {
    if (reading_) {
        return;  // The last reading has not finished: the sensor is slow, so skip this one.
    }
    reading_ = true;
    worker_.post([this, path = hinge_->rawPath,
                  done = lifeline_.guard([this](std::optional<double> raw) { take(raw); })](
                     const std::stop_token& stop) {
        const std::optional<double> raw = readSysfsNumber(path);
        if (!stop.stop_requested()) {
            queue_.post([done, raw]() mutable { done(raw); });
        }
    });
}

void IioLidSensorSource::take(std::optional<double> raw) {
    reading_ = false;
    if (!hinge_) {
        return;
    }
    if (raw) {
        if (const auto degrees = hinge_->degrees(*raw)) {
            onAngle_(*degrees);
        }
    } else if (access(hinge_->rawPath.c_str(), F_OK) != 0) {
        const FoundHandler onFound = onFound_;  // The handler may open or close this source.
        close();
        onFound(false);
    }
}

}  // namespace chimewerk
