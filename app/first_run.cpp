// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/first_run.h"

namespace chimewerk {

void FirstRun::begin(bool showsDashboard) {
    if (defaults_.object(kStartedKey)) {
        return;
    }
    defaults_.setObject(kStartedKey, DefaultsValue{true});
    if (showsDashboard) {
        actions_.openDashboard();
    }
    queue_.postAfter(kPatience, lifeline_.guard([this] {
        if (!actions_.isInTray()) {
            actions_.tell();
        }
    }));
}

}  // namespace chimewerk
