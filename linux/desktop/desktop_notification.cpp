// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/desktop/desktop_notification.h"

#include "linux/bus/bus_link.h"

namespace chimewerk {

void showDesktopNotification(const std::string& id, const std::string& summary,
                             const std::string& body) {
    constexpr std::uint64_t kPatience = 1'000'000;  // Microseconds.
    constexpr const char* kService = "org.freedesktop.Notifications";
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) {
        return;
    }
    const std::unique_ptr<sd_bus, UnrefBus> bus(opened);
    sd_bus_set_method_call_timeout(opened, kPatience);
    sd_bus_call_method(opened, kService, "/org/freedesktop/Notifications", kService, "Notify",
                       nullptr, nullptr, "susssasa{sv}i", "Chimewerk", 0U, id.c_str(),
                       summary.c_str(), body.c_str(), 0, 1, "desktop-entry", "s", id.c_str(), -1);
}

}  // namespace chimewerk
