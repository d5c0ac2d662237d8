// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace chimewerk {

struct MenuItem;
using Menu = std::vector<std::unique_ptr<MenuItem>>;

/// An entry of a menu, as data. The code that shows the menu calls `action` when the user chooses
/// the entry.
struct MenuItem {
    /// UTF-8; empty for a separator.
    std::string title = {};
    /// What the user's choice does; an entry without it, and without a submenu, cannot be chosen.
    std::function<void()> action = {};
    /// The character that, pressed with the desktop's command modifier, chooses the entry; empty
    /// for none.
    std::string keyEquivalent = {};
    /// Whether it is one of several of which exactly one is marked.
    bool isRadio = false;
    /// Whether it is marked.
    bool isOn = false;
    Menu submenu = {};

    bool isSeparator() const { return title.empty(); }
    bool isEnabled() const { return action != nullptr || !submenu.empty(); }
};

}  // namespace chimewerk
