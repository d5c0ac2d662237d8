// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/lid/linux_hardware_query.h"

#include <sys/utsname.h>

#include <utility>

#include "linux/lid/hidraw_lid_sensor_source.h"
#include "linux/lid/iio_lid_sensor_source.h"

namespace chimewerk {

namespace {

std::string thisMachine() {
    utsname names{};
    return uname(&names) == 0 ? names.machine : "";
}

}  // namespace

LinuxHardwareQuery::LinuxHardwareQuery() : LinuxHardwareQuery(thisMachine(), hasHingeSensor) {}

LinuxHardwareQuery::LinuxHardwareQuery(std::string machine, std::function<bool()> hasHingeSensor)
    : machine_(std::move(machine)), hasHingeSensor_(std::move(hasHingeSensor)) {}

bool LinuxHardwareQuery::hasHingeSensor() {
    return HidrawLidSensorSource::isPresent() || findIioAngle().has_value();
}

bool LinuxHardwareQuery::supportsLidAngle() const {
    // Big-endian processors are named "aarch64_be".
    return machine_.starts_with("aarch64") || hasHingeSensor_();
}

}  // namespace chimewerk
