// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <utility>

#include "app/dashboard_dependencies.h"
#include "app/windows.h"
#include "ui/desktop_contrast.h"

namespace chimewerk {

/// Makes the windows of this folder.
class QtWindows final : public WindowFactory {
public:
    /// `manual` is the absolute path of the manual to which the guide leads.
    QtWindows(DashboardDependencies dependencies, std::string manual)
        : deps_(std::move(dependencies)), manual_(std::move(manual)) {}

    std::unique_ptr<Window> makeDashboard(AppDelegate& delegate) override;
    std::unique_ptr<Window> makeHelpWindow(AppDelegate& delegate) override;
    std::unique_ptr<Window> makeMicrophoneQuestion(
        std::function<void(bool allowed)> answered) override;

private:
    void followContrast();

    const DashboardDependencies deps_;
    const std::string manual_;
    /// Made with the first window.
    std::unique_ptr<DesktopContrast> contrast_;
};

}  // namespace chimewerk
