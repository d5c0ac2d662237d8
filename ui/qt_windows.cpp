// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/qt_windows.h"

#include <QApplication>
#include <utility>

#include "app/app_delegate.h"
#include "ui/dashboard/dashboard_window_controller.h"
#include "ui/help_window_controller.h"
#include "ui/microphone_question.h"
#include "ui/rules/appearance.h"
#include "ui/rules/contrast.h"

namespace chimewerk {

namespace {

/// Returns the program's window that the user looks at; null if there is none.
QWidget* shownWindow() {
    if (QWidget* const active = QApplication::activeWindow()) {
        return active;
    }
    for (QWidget* const each : QApplication::topLevelWidgets()) {
        if (each->windowType() == Qt::Window && each->isVisible() && !each->isMinimized()) {
            return each;
        }
    }
    return nullptr;
}

}  // namespace

void QtWindows::followContrast() {
    if (contrast_ == nullptr) {
        contrast_ = std::make_unique<DesktopContrast>([this](bool isHigh) {
            ColorScheme::useHighContrast(isHigh);
            deps_.notifications.post({.name = kContrastDidChange});
        });
        QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &contrast_->context(),
                         [this] { contrast_->readTheme(); });
        contrast_->readTheme();
    }
}

std::unique_ptr<Window> QtWindows::makeDashboard(AppDelegate& delegate) {
    followContrast();
    return std::make_unique<DashboardWindowController>(
        deps_,
        DashboardMonitors{
            .lid = delegate.lidMonitor,
            .keyboard = delegate.keyboardMonitor,
            .resetBatteryLowFlag = [&delegate] { delegate.resetBatteryLowFlag(); },
            .mayUseMicrophone = [&delegate] { return delegate.mayUseMicrophone(); },
            .allowMicrophone = [&delegate](bool allowed) { delegate.allowMicrophone(allowed); },
            .waitsForRestart =
                [&delegate](std::string_view id) { return delegate.waitsForRestart(id); },
            .menu = delegate.menu(),
            .isInTray = [&delegate] { return delegate.isInTray(); },
            .whenInTray =
                [&delegate](std::function<void()> job) { delegate.whenInTray(std::move(job)); }});
}

std::unique_ptr<Window> QtWindows::makeHelpWindow(AppDelegate& delegate) {
    followContrast();
    return std::make_unique<HelpWindowController>(manual_, delegate.menu(), deps_.notifications);
}

std::unique_ptr<Window> QtWindows::makeMicrophoneQuestion(
    std::function<void(bool allowed)> answered) {
    followContrast();
    QWidget* const parent = shownWindow();
    const ColorScheme& colors =
        storedDarkMode(deps_.defaults) ? ColorScheme::dark() : ColorScheme::light();
    return std::make_unique<MicrophoneQuestion>(
        parent, parent != nullptr ? colorSchemeOf(*parent) : colors, answered);
}

}  // namespace chimewerk
