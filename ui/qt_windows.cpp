#include "ui/qt_windows.h"

#include "app/app_delegate.h"
#include "ui/dashboard/dashboard_window_controller.h"
#include "ui/help_window_controller.h"

namespace chimewerk {

std::unique_ptr<Window> QtWindows::makeDashboard(AppDelegate& delegate) {
    return std::make_unique<DashboardWindowController>(DashboardDependencies{
        .sounds = parts_.sounds,
        .notifications = parts_.notifications,
        .defaults = parts_.defaults,
        .files = parts_.files,
        .resourceFolder = parts_.resourceFolder,
        .soundFolder = parts_.soundFolder,
        .lidMonitor = delegate.lidMonitor,
        .keyboardMonitor = delegate.keyboardMonitor,
        .keys = parts_.keys,
        .keyPermissionPage = parts_.keyPermissionPage,
        .resetBatteryLowFlag = [&delegate] { delegate.resetBatteryLowFlag(); },
        .isAppleSilicon = parts_.isAppleSilicon});
}

std::unique_ptr<Window> QtWindows::makeHelpWindow() {
    return std::make_unique<HelpWindowController>();
}

}  // namespace chimewerk
