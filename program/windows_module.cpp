// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The module with the windows.
#include <string>

#include "program/loaded_windows.h"
#include "ui/qt_windows.h"

extern "C" chimewerk::WindowFactory* CHIMEWERK_WINDOWS_FUNCTION(
    const chimewerk::DashboardDependencies& dependencies, const std::string& manual);

chimewerk::WindowFactory* CHIMEWERK_WINDOWS_FUNCTION(
    const chimewerk::DashboardDependencies& dependencies, const std::string& manual) {
    return new chimewerk::QtWindows(dependencies, manual);
}
