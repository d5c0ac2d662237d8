// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/permission_reminder.h"

namespace chimewerk {

void PermissionReminder::show() {
    if (isStarting_ && wasShown()) {
        return;
    }
    if (!wasShown()) {
        defaults_.setObject(kShownKey, DefaultsValue{true});
    }
    page_.show();
}

void PermissionReminder::endStartUp() {
    isStarting_ = false;
    if (wasShown() && keys_.trusted()) {
        defaults_.setObject(kShownKey, std::nullopt);
    }
}

bool PermissionReminder::wasShown() const {
    return defaults_.object(kShownKey) == DefaultsValue{true};
}

}  // namespace chimewerk
