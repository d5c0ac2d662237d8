// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMenu>
#include <QWidget>
#include <vector>

#include "app/menu.h"

namespace chimewerk {

/// Where a menu is shown: in a window of the toolkit, or by a tray that reads it over the bus.
enum class MenuPlace { Window, Bus };

/// The program's menu as the toolkit shows it, for the tray and for a button. Its marks and
/// its hidden entries are those of the data whenever it opens and after each choice. Main thread only.
class ProgramMenu final {
public:
    /// `items` outlives the menu.
    ProgramMenu(const Menu& items, MenuPlace place);
    ProgramMenu(const ProgramMenu&) = delete;
    ProgramMenu& operator=(const ProgramMenu&) = delete;
    ~ProgramMenu();

    QMenu& widget() { return menu_; }
    /// Reads again which entries are marked or hidden.
    void update();

private:
    struct Entry {
        QAction* action;
        const MenuItem* item;
    };

    void fill(QMenu& menu, const Menu& items);

    const MenuPlace place_;
    QMenu menu_;
    std::vector<Entry> entries_;
};

/// Lets the keys of the menu's entries work in a window, and F1 as the one for help. `items`
/// outlives the window.
void addMenuShortcuts(QWidget& window, const Menu& items);

}  // namespace chimewerk
