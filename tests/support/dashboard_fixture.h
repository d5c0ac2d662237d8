#pragma once

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTableView>
#include <memory>

#include "monitors/keyboard_monitor.h"
#include "monitors/lid_angle_monitor.h"
#include "support/fake_key_source.h"
#include "support/fake_lid_sensor_source.h"
#include "support/fake_sound_folder.h"
#include "support/sound_library.h"
#include "ui/dashboard/dashboard_window_controller.h"

namespace chimewerk {

/// The dashboard among fakes, and its widgets as a user tells them apart.
class DashboardFixture {
public:
    DashboardFixture() { open(); }

    /// A dashboard as after a new start of the program, on what is stored.
    void open() {
        controller.reset();
        controller = std::make_unique<DashboardWindowController>(around);
        controller->showWindow();
    }

    QWidget& window() {
        for (QWidget* const each : QApplication::topLevelWidgets()) {
            if (each->windowTitle() == QStringLiteral("Chimewerk — Dashboard")) {
                return *each;
            }
        }
        throw std::out_of_range("no dashboard");
    }
    QTableView& table() { return *window().findChild<QTableView*>(); }
    QComboBox& themes() { return *window().findChild<QComboBox*>(); }
    /// By its tool tip.
    QPushButton& button(const char* tip) {
        for (QPushButton* const each : window().findChildren<QPushButton*>()) {
            if (each->toolTip() == QString::fromUtf8(tip)) {
                return *each;
            }
        }
        throw std::out_of_range(tip);
    }

    SoundLibrary library;
    FakeLidSensorSource lidSensor;
    FakeKeySource keys;
    FakeSoundFolder folder;
    LidAngleMonitor lidMonitor{
        {library.queue, library.queue, library.notifications, *library, lidSensor}};
    KeyboardMonitor keyboardMonitor{library.queue, keys, keys, *library};
    DashboardDependencies around{.sounds = *library,
                                 .notifications = library.notifications,
                                 .defaults = library.defaults,
                                 .files = library.sounds,
                                 .resourceFolder = "/res",
                                 .soundFolder = folder,
                                 .lidMonitor = lidMonitor,
                                 .keyboardMonitor = keyboardMonitor,
                                 .keys = keys,
                                 .keyPermissionPage = keys,
                                 .resetBatteryLowFlag = [] {},
                                 .isAppleSilicon = false};
    std::unique_ptr<DashboardWindowController> controller;
};

}  // namespace chimewerk
