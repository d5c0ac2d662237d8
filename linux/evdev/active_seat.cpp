// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/evdev/active_seat.h"

#include <systemd/sd-login.h>
#include <unistd.h>

namespace chimewerk {

bool ActiveSeat::Logind::ask() {
    constexpr int kActiveOnly = 1;
    return sd_uid_get_seats(getuid(), kActiveOnly, nullptr) > 0 ||
           access("/run/systemd/seats/seat0", F_OK) != 0;
}

}  // namespace chimewerk
