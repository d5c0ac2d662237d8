// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "app/menu.h"

namespace chimewerk {

/// The program's place in the desktop's tray. Main thread only.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Shows the program's icon with this menu, which outlives the item: at once where the desktop
    /// has a tray, else when it gets one, and again after a tray has been replaced. Marks are read
    /// anew after each choice of an entry. `onActivate` runs when the icon itself is chosen, where
    /// the tray distinguishes that from opening the menu.
    virtual void show(const Menu& menu, std::function<void()> onActivate) = 0;
};

}  // namespace chimewerk
