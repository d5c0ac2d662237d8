// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/iio_lid_sensor_source.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stop_token>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/base/file_reading.h"
#include "linux/base/sysfs.h"
#include "linux/links/udev_devices.h"

namespace chimewerk {

namespace {

constexpr Seconds kReadInterval{0.25};
/// Some drivers report 500 when the angle is unknown.
constexpr double kMaxAngle = 360.0;
constexpr double kDegreesPerRadian = 180.0 / std::numbers::pi;
constexpr std::string_view kRawSuffix = "_raw";
/// The lid angle sensor of Apple Silicon laptops.
constexpr std::string_view kAppleHinge = "aop-sensors-las";

/// Returns the angle channels of a device, such as "in_angl" and "in_angl0", in order.
std::vector<std::string> angleChannels(const std::string& folder) {
    std::vector<std::string> channels;
    for (std::string& name : namesIn(folder)) {
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
    const bool isHinge = device.find("hinge") != std::string::npos ||
                         device.find("lid") != std::string::npos || device == kAppleHinge;
    return isHinge && !labelled && !channels.empty() ? std::optional(channels.front())
                                                     : std::nullopt;
}

/// Reads a property of one channel, else the property that the device's angle channels share.
std::optional<double> channelNumber(const std::string& folder, const std::string& channel,
                                    const char* property) {
    const auto own = readSysfsNumber(folder + '/' + channel + property);
    return own ? own : readSysfsNumber(folder + "/in_angl" + property);
}

/// Returns the machine's first device that measures the angle of a hinge.
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

/// Returns the folder of the accelerometer with this label; empty without one.
std::string accelerometer(std::string_view label) {
    for (const UdevDevice& device : udevDevices("iio")) {
        if (readSysfsLine(device.folder + "/label") == label &&
            access((device.folder + "/in_accel_x_raw").c_str(), R_OK) == 0) {
            return device.folder;
        }
    }
    return {};
}

std::optional<Acceleration> readAcceleration(const std::string& folder) {
    const double scale = readSysfsNumber(folder + "/in_accel_scale").value_or(1);
    Acceleration acceleration{};
    for (std::size_t i = 0; i < acceleration.size(); ++i) {
        const std::string axis = folder + "/in_accel_" + "xyz"[i];
        const auto raw = readSysfsNumber(axis + "_raw");
        if (!raw) {
            return std::nullopt;
        }
        acceleration[i] = *raw * readSysfsNumber(axis + "_scale").value_or(scale);
    }
    return acceleration;
}

}  // namespace

std::optional<float> IioHinge::degrees(double raw) const {
    const double angle = (raw + offset) * degreesPerUnit;
    const bool isPossible = angle >= 0 && angle <= kMaxAngle;
    return isPossible ? std::optional(static_cast<float>(std::round(angle))) : std::nullopt;
}

std::optional<float> lidAngleOf(const Acceleration& display, const Acceleration& base) {
    constexpr double kGravity = 9.81;
    constexpr double kMaxDeviation = 1.5;
    /// Turning the lid changes nothing about gravity along the hinge.
    constexpr double kLeastAcross = 3;
    for (const auto& [x, y, z] : {display, base}) {
        if (std::abs(std::hypot(x, y, z) - kGravity) > kMaxDeviation ||
            std::hypot(y, z) < kLeastAcross) {
            return std::nullopt;
        }
    }
    const double turn = std::atan2(-display[2], -display[1]) - std::atan2(base[2], base[1]);
    const double degrees = std::round(turn * kDegreesPerRadian);
    const double angle = degrees < 0 ? degrees + kMaxAngle : degrees;
    // A closed lid must not seem to be folded right round.
    constexpr double kAmbiguous = 350;
    return angle < kAmbiguous ? std::optional(static_cast<float>(angle)) : std::nullopt;
}

std::optional<IioAngle> findIioAngle() {
    if (const auto hinge = findIioHinge()) {
        return IioAngle{.read = [hinge]() -> std::optional<float> {
                            const auto raw = readSysfsNumber(hinge->rawPath);
                            return raw ? hinge->degrees(*raw) : std::nullopt;
                        },
                        .path = hinge->rawPath};
    }
    const std::string display = accelerometer("accel-display");
    const std::string base = accelerometer("accel-base");
    if (display.empty() || base.empty()) {
        return std::nullopt;
    }
    return IioAngle{.read = [display, base]() -> std::optional<float> {
                        const auto above = readAcceleration(display);
                        const auto below = readAcceleration(base);
                        return above && below ? lidAngleOf(*above, *below) : std::nullopt;
                    },
                    .path = display + "/in_accel_x_raw"};
}

bool IioLidSensorSource::open(AngleHandler onAngle, FoundHandler onFound) {
    onAngle_ = std::move(onAngle);
    onFound_ = std::move(onFound);
    const bool wasOpen = angle_.has_value();
    angle_ = findIioAngle();
    if (angle_ && !wasOpen) {
        poller_.start(kReadInterval, [this] { readAngle(); });
    } else if (!angle_) {
        close();
    }
    return angle_.has_value();
}

void IioLidSensorSource::close() {
    poller_.stop();
    angle_ = std::nullopt;
    onAngle_ = nullptr;
    onFound_ = nullptr;
}

void IioLidSensorSource::readAngle() {
    if (reading_) {
        return;  // The last reading has not finished: the sensor is slow, so skip this one.
    }
    reading_ = true;
    worker_.post([this, read = angle_->read,
                  done = lifeline_.guard([this](std::optional<float> degrees) { take(degrees); })](
                     const std::stop_token& stop) {
        const std::optional<float> degrees = read();
        if (!stop.stop_requested()) {
            queue_.post([done, degrees]() mutable { done(degrees); });
        }
    });
}

void IioLidSensorSource::take(std::optional<float> degrees) {
    reading_ = false;
    if (!angle_) {
        return;
    }
    if (degrees) {
        onAngle_(*degrees);
    } else if (access(angle_->path.c_str(), F_OK) != 0) {
        const FoundHandler onFound = onFound_;  // The handler may open or close this source.
        close();
        onFound(false);
    }
}

}  // namespace chimewerk
