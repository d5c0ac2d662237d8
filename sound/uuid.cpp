// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sound/uuid.h"

#include <random>
#include <string_view>

namespace chimewerk {

std::string randomUuid() {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    // x: any digit; y: 8, 9, A or B, which mark the variant.
    std::string uuid = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
    std::random_device random;
    std::uniform_int_distribution<unsigned> anyDigit(0, 15);
    for (char& place : uuid) {
        if (place == 'x') {
            place = kDigits[anyDigit(random)];
        } else if (place == 'y') {
            place = kDigits[8 + anyDigit(random) % 4];
        }
    }
    return uuid;
}

}  // namespace chimewerk
