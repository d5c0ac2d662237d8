// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/notification_center.h"

#include <utility>
#include <vector>

namespace chimewerk {

NotificationCenter::Subscription NotificationCenter::observe(std::string_view name,
                                                             Observer observer) {
    auto shared = std::make_shared<Observer>(std::move(observer));
    observers_.emplace(std::string(name), shared);
    return Subscription(std::move(shared));
}

void NotificationCenter::post(const Notification& notification) {
    std::vector<std::weak_ptr<Observer>> present;
    auto [entry, end] = observers_.equal_range(notification.name);
    while (entry != end) {
        if (entry->second.expired()) {
            entry = observers_.erase(entry);
        } else {
            present.push_back(entry->second);
            ++entry;
        }
    }
    for (const auto& weak : present) {
        if (const auto observer = weak.lock()) {
            (*observer)(notification);
        }
    }
}

}  // namespace chimewerk
