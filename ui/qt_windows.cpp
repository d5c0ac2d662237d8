// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/qt_windows.h"

#include "app/app_delegate.h"
#include "ui/dashboard/dashboard_window_controller.h"
#include "ui/help_window_controller.h"

namespace chimewerk {

std::unique_ptr<Window> QtWindows::makeDashboard(AppDelegate& delegate) {
    return std::make_unique<DashboardWindowController>(
        deps_,
        DashboardMonitors{.lid = delegate.lidMonitor,
                          .keyboard = delegate.keyboardMonitor,
                          .resetBatteryLowFlag = [&delegate] { delegate.resetBatteryLowFlag(); }});
}

std::unique_ptr<Window> QtWindows::makeHelpWindow() {
    return std::make_unique<HelpWindowController>(manual_);
}

}  // namespace chimewerk
