// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "app/windows.h"
#include "ui/dashboard/dashboard_dependencies.h"

namespace chimewerk {

/// Makes the windows of this folder.
class QtWindows final : public WindowFactory {
public:
    explicit QtWindows(const DashboardDependencies& dependencies) : deps_(dependencies) {}

    std::unique_ptr<Window> makeDashboard(AppDelegate& delegate) override;
    std::unique_ptr<Window> makeHelpWindow() override;

private:
    const DashboardDependencies deps_;
};

}  // namespace chimewerk
