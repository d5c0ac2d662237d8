// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <cstdint>
#include <string>
#include <vector>

#include "linux/base/sysfs.h"
#include "linux/lid/hid_lid_sensor.h"

/// For udev's rules: succeeds when the file that is named holds the report descriptor of a lid's
/// hinge sensor.
int main(int count, char** arguments) {
    if (count != 2) {
        return 2;
    }
    const std::string descriptor = chimewerk::readSysfs(arguments[1]).value_or("");
    const std::vector<std::uint8_t> bytes(descriptor.begin(), descriptor.end());
    return chimewerk::findLidSensor(bytes) ? 0 : 1;
}
