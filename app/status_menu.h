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
    /// The actions of the entries.
    struct Actions {
        std::function<void()> unmute;
        std::function<void()> openDashboard;
        std::function<void()> openHelp;
        /// `item` is the chosen entry, one of `sensMenuItems`.
        std::function<void(const MenuItem& item)> setSens;
        std::function<void()> terminate;
    };

    explicit StatusMenu(const Actions& actions);

    const Menu& entries() const { return entries_; }
    /// The sensitivity entries: low, medium, high.
    const std::vector<MenuItem*>& sensMenuItems() const { return sensMenuItems_; }
    /// Marks this sensitivity entry and no other.
    void markSensitivity(const MenuItem& chosen);
    /// Offers to unmute the program while it is muted.
    void showMute(bool isMuted) { unmute_->isHidden = !isMuted; }

private:
    Menu entries_;
    MenuItem* unmute_ = nullptr;
    std::vector<MenuItem*> sensMenuItems_;
};

/// Returns the knock threshold, a peak from 0.0 to 1.0, for this sensitivity. An unknown name
/// stands for medium sensitivity.
float slapThresholdFor(std::string_view sensitivity);

}  // namespace chimewerk
