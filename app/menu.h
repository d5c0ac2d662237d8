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

/// A menu entry, as data. The code that shows the menu calls `action` when the user chooses
/// the entry.
struct MenuItem {
    /// UTF-8; empty for a separator.
    std::string title = {};
    /// Called when the user chooses the entry. An entry with neither action nor submenu
    /// is disabled.
    std::function<void()> action = {};
    /// The key that chooses the entry together with the desktop's command modifier; empty for none.
    std::string keyEquivalent = {};
    /// Whether the entry is one of a group in which exactly one is marked.
    bool isRadio = false;
    /// Whether the entry is marked.
    bool isOn = false;
    /// Whether the entry is left out for now.
    bool isHidden = false;
    Menu submenu = {};

    bool isSeparator() const { return title.empty(); }
    bool isEnabled() const { return action != nullptr || !submenu.empty(); }
};

}  // namespace chimewerk
