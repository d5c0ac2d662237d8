// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "app/menu.h"

namespace chimewerk {

/// The program's icon in the desktop's tray. Main thread only.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Shows the icon with this menu, which must outlive the item: at once if there is a tray, else
    /// when one appears, and again after a tray was replaced. Which entries are marked or hidden is
    /// read again after each choice. `onActivate` is called when the user clicks the icon itself, if
    /// the tray distinguishes that from opening the menu.
    virtual void show(const Menu& menu, std::function<void()> onActivate) = 0;

    /// Shows by the icon, and in the menu, that the program is muted, or no longer.
    virtual void showMute(bool isMuted) = 0;

    /// Whether a tray shows the icon now.
    virtual bool isShown() const = 0;
    /// Calls `job` when the icon appears, and where the desktop tells when it goes and comes back,
    /// then too. It replaces the job given before.
    virtual void whenShown(std::function<void()> job) = 0;
};

}  // namespace chimewerk
