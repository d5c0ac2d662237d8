// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string_view>

#include "app/menu.h"

namespace chimewerk {

/// The menu of the program's icon in the tray. Main thread only.
class StatusMenu {
public:
    /// What the entries do.
    struct Actions {
        std::function<void()> openDashboard;
        std::function<void()> openHelp;
        /// `item` is the entry chosen, one of `sensMenuItems`.
        std::function<void(const MenuItem& item)> setSens;
        std::function<void()> terminate;
    };

    explicit StatusMenu(const Actions& actions);

    const Menu& entries() const { return entries_; }
    /// The sensitivity entries: low, medium, high.
    const std::vector<MenuItem*>& sensMenuItems() const { return sensMenuItems_; }
    /// Marks this sensitivity entry, and it alone.
    void markSensitivity(const MenuItem& chosen);

private:
    Menu entries_;
    std::vector<MenuItem*> sensMenuItems_;
};

/// Returns how loud a knock must be at the sensitivity of this name: a peak from 0.0 to 1.0. An
/// unknown name stands for medium sensitivity.
float slapThresholdFor(std::string_view sensitivity);

}  // namespace chimewerk
