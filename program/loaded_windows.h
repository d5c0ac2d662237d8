// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "app/dashboard_dependencies.h"
#include "app/windows.h"
#include "linux/base/module.h"

namespace chimewerk {

/// The type of the only function of the module with the windows. Its name contains the program's
/// version.
using WindowsModuleFunction = WindowFactory* (*)(const DashboardDependencies& dependencies,
                                                 const std::string& manual);

/// The windows from a module that is loaded with the first one: most of the time none is open.
/// Without the module they stay closed, and standard error says why. Main thread only.
class LoadedWindows final : public WindowFactory {
public:
    /// `manual` is the absolute path of the manual to which the guide leads. The module must outlive
    /// the object.
    LoadedWindows(Module& module, DashboardDependencies dependencies, std::string manual)
        : module_(module), deps_(std::move(dependencies)), manual_(std::move(manual)) {}

    std::unique_ptr<Window> makeDashboard(AppDelegate& delegate) override {
        return windows().makeDashboard(delegate);
    }
    std::unique_ptr<Window> makeHelpWindow(AppDelegate& delegate) override {
        return windows().makeHelpWindow(delegate);
    }
    std::unique_ptr<Window> makeMicrophoneQuestion(
        std::function<void(bool allowed)> answered) override {
        return windows().makeMicrophoneQuestion(std::move(answered));
    }

private:
    WindowFactory& windows();

    Module& module_;
    const DashboardDependencies deps_;
    const std::string manual_;
    /// Made with the first window.
    std::unique_ptr<WindowFactory> windows_;
};

}  // namespace chimewerk
