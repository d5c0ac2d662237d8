// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "app/dashboard_dependencies.h"
#include "bench/bench_library.h"
#include "linux/base/system_clock.h"
#include "linux/lid/null_lid_sensor_source.h"
#include "monitors/keyboard_monitor.h"
#include "monitors/lid_angle_monitor.h"

namespace chimewerk {

/// The dashboard's dependencies: the real store and queue, and no hardware.
struct BenchDashboard {
    /// Uses the settings in this configuration folder; stores nothing if it is empty.
    explicit BenchDashboard(const std::string& configHome = {}) : library(queue, configHome) {}

    EpollMainQueue queue;
    BenchLibrary library;
    SystemClock clock;
    NullLidSensorSource lidSensor;
    NullKeys keys;
    NullSoundFolder folder;
    LidAngleMonitor lidMonitor{{queue, clock, library.notifications, library.sounds, lidSensor}};
    KeyboardMonitor keyboardMonitor{queue, keys, keys, library.sounds};
    DashboardDependencies dependencies{.sounds = library.sounds,
                                       .notifications = library.notifications,
                                       .defaults = library.defaults,
                                       .files = library.files,
                                       .resourceFolder = "/res",
                                       .soundFolder = folder,
                                       .keys = keys,
                                       .keyPermissionPage = keys,
                                       .isAppleSilicon = false};
    const Menu menu;
    DashboardMonitors monitors{.lid = lidMonitor,
                               .keyboard = keyboardMonitor,
                               .resetBatteryLowFlag = [] {},
                               .mayUseMicrophone = [] { return true; },
                               .allowMicrophone = [](bool) {},
                               .waitsForRestart = [](std::string_view) { return false; },
                               .menu = menu,
                               .isInTray = [] { return true; },
                               .whenInTray = [](auto) {}};
};

}  // namespace chimewerk
