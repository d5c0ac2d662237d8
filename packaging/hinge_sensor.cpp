// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <grp.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

#include "linux/base/file_reading.h"
#include "linux/lid/hid_lid_sensor.h"

namespace {

/// udev runs the helper as root, but a report descriptor may be read by anyone, and a device
/// chooses what it contains. Returns false if the rights of root cannot be given up.
bool becomeNobody() {
    constexpr uid_t kNobody = 65534;
    return geteuid() != 0 ||
           (setgroups(0, nullptr) == 0 && setresgid(kNobody, kNobody, kNobody) == 0 &&
            setresuid(kNobody, kNobody, kNobody) == 0 &&
            prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0);
}

}  // namespace

/// For udev's rules: succeeds if the named file contains the report descriptor of a lid's
/// hinge sensor.
int main(int count, char** arguments) {
    if (count != 2 || !becomeNobody()) {
        return 2;
    }
    const std::string descriptor = chimewerk::readText(arguments[1]).value_or("");
    const std::vector<std::uint8_t> bytes(descriptor.begin(), descriptor.end());
    return chimewerk::findLidSensor(bytes) ? 0 : 1;
}
