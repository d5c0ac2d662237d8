// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "monitors/app_launch_monitor.h"

namespace chimewerk {

void AppLaunchMonitor::start() {
    observer_ = source_.addObserver(lifeline_.guard([this] {
        if (onLaunch) {
            onLaunch();
        }
    }));
}

void AppLaunchMonitor::stop() {
    if (observer_) {
        source_.removeObserver(*observer_);
        observer_.reset();
    }
}

}  // namespace chimewerk
