// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QTableView>
#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "app/status_menu.h"
#include "monitors/keyboard_monitor.h"
#include "monitors/lid_angle_monitor.h"
#include "support/fake_key_source.h"
#include "support/fake_lid_sensor_source.h"
#include "support/fake_sound_folder.h"
#include "support/sound_library.h"
#include "ui/dashboard/dashboard_window_controller.h"

namespace chimewerk {

/// The dashboard with fake dependencies, and access to its widgets by what the user sees.
class DashboardFixture {
public:
    DashboardFixture() { open(); }

    /// Opens a new dashboard with the stored settings, as after a restart.
    void open() {
        controller.reset();
        controller = std::make_unique<DashboardWindowController>(
            dependencies,
            DashboardMonitors{.lid = lidMonitor,
                              .keyboard = keyboardMonitor,
                              .resetBatteryLowFlag = [this] { ++batteryResets; },
                              .mayUseMicrophone = [this] { return microphoneAllowed; },
                              .allowMicrophone = [this](bool may) { microphoneAllowed = may; },
                              .waitsForRestart = [this](auto) { return silent; },
                              .menu = menu.entries(),
                              .isInTray = [this] { return inTray; },
                              .whenInTray = [this](auto job) { onTray = std::move(job); }});
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

    /// Selects an event; refreshes the panel if it is already selected.
    void select(std::string_view id) {
        const auto event = std::ranges::find(library->events, id, &SoundEvent::id);
        table().clearSelection();
        table().selectRow(static_cast<int>(event - library->events.begin()));
    }
    /// Returns whether a label shows exactly this text.
    bool shows(const std::string& text) {
        return std::ranges::any_of(window().findChildren<QLabel*>(), [&text](QLabel* label) {
            return label->text().toStdString() == text && label->isVisible();
        });
    }

    SoundLibrary library;
    FakeLidSensorSource lidSensor;
    FakeKeySource keys;
    FakeSoundFolder folder;
    LidAngleMonitor lidMonitor{
        {library.queue, library.queue, library.notifications, *library, lidSensor}};
    KeyboardMonitor keyboardMonitor{library.queue, keys, keys, *library};
    int batteryResets = 0;
    bool microphoneAllowed = true;
    bool silent = false;
    bool inTray = true;
    /// To be called when the tray comes.
    std::function<void()> onTray;
    /// What was chosen in the menu.
    std::string chosen;
    StatusMenu menu{{.unmute = [this] { library->setMuted(false); },
                     .openDashboard = [this] { chosen += "dashboard "; },
                     .openHelp = [this] { chosen += "help "; },
                     .setSens = [this](const MenuItem& item) { chosen += item.title + " "; },
                     .terminate = [this] { chosen += "quit "; }}};
    DashboardDependencies dependencies{.sounds = *library,
                                       .notifications = library.notifications,
                                       .defaults = library.defaults,
                                       .files = library.sounds,
                                       .resourceFolder = "/res",
                                       .soundFolder = folder,
                                       .keys = keys,
                                       .keyPermissionPage = keys,
                                       .isAppleSilicon = false};
    std::unique_ptr<DashboardWindowController> controller;
};

}  // namespace chimewerk
