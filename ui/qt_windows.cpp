// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/qt_windows.h"

#include <utility>

#include "app/app_delegate.h"
#include "ui/dashboard/dashboard_window_controller.h"
#include "ui/help_window_controller.h"

namespace chimewerk {

std::unique_ptr<Window> QtWindows::makeDashboard(AppDelegate& delegate) {
    return std::make_unique<DashboardWindowController>(
        deps_,
        DashboardMonitors{
            .lid = delegate.lidMonitor,
            .keyboard = delegate.keyboardMonitor,
            .resetBatteryLowFlag = [&delegate] { delegate.resetBatteryLowFlag(); },
            .waitsForRestart =
                [&delegate](std::string_view id) { return delegate.waitsForRestart(id); },
            .menu = delegate.menu(),
            .isInTray = [&delegate] { return delegate.isInTray(); },
            .whenInTray =
                [&delegate](std::function<void()> job) { delegate.whenInTray(std::move(job)); }});
}

std::unique_ptr<Window> QtWindows::makeHelpWindow(AppDelegate& delegate) {
    return std::make_unique<HelpWindowController>(manual_, delegate.menu());
}

}  // namespace chimewerk
