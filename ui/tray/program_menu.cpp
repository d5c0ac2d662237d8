// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/program_menu.h"

#include <QActionGroup>
#include <QKeySequence>
#include <QShortcut>
#include <QString>

#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

/// Returns an entry's title with its ampersands shown as such, although one marks a mnemonic.
QString titleOf(const MenuItem& item, MenuPlace place) {
    QString title = worded(item.title);
    if (place == MenuPlace::Window) {
        return title.replace(QLatin1Char('&'), QLatin1String("&&"));
    }
    // The toolkit makes the first ampersand the bus's mark of a mnemonic, even a double one, and
    // leaves all others. The mark before a character without width underlines nothing.
    return title.contains(QLatin1Char('&')) ? QStringLiteral("&\u200B") + title : title;
}

QKeySequence shortcutOf(const MenuItem& item) {
    return {QLatin1String("Ctrl+") + QString::fromStdString(item.keyEquivalent).toUpper()};
}

}  // namespace

ProgramMenu::ProgramMenu(const Menu& items, MenuPlace place) : place_(place) {
    fill(menu_, items);
    update();
    QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { update(); });
}

ProgramMenu::~ProgramMenu() {
    // The toolkit deletes what it has made for the bus only with entries that are removed.
    for (QMenu* const submenu : menu_.findChildren<QMenu*>()) {
        submenu->clear();
    }
    menu_.clear();
}

void ProgramMenu::fill(QMenu& menu, const Menu& items) {
    QActionGroup* radios = nullptr;
    for (const auto& item : items) {
        if (item->isSeparator()) {
            menu.addSeparator();
            continue;
        }
        if (!item->submenu.empty()) {
            QMenu* const submenu = menu.addMenu(titleOf(*item, place_));
            // It is a window, too, and looks like the menu that it belongs to.
            submenu->setAttribute(Qt::WA_WindowPropagation);
            fill(*submenu, item->submenu);
            continue;
        }
        QAction* const action = menu.addAction(titleOf(*item, place_));
        action->setEnabled(item->isEnabled());
        entries_.push_back({action, item.get()});
        if (!item->keyEquivalent.empty()) {
            action->setShortcut(shortcutOf(*item));
        }
        if (item->isRadio) {
            radios = radios == nullptr ? new QActionGroup(&menu) : radios;
            action->setCheckable(true);
            radios->addAction(action);
        }
        if (item->action) {
            QObject::connect(action, &QAction::triggered, action, [this, chosen = item.get()] {
                chosen->action();
                update();
            });
        }
    }
}

void ProgramMenu::update() {
    for (const Entry& entry : entries_) {
        entry.action->setVisible(!entry.item->isHidden);
        entry.action->setChecked(entry.item->isOn);
    }
}

void addMenuShortcuts(QWidget& window, const Menu& items) {
    for (const auto& item : items) {
        if (item->keyEquivalent.empty() || !item->action) {
            continue;
        }
        auto* const shortcut = new QShortcut(shortcutOf(*item), &window);
        if (item->keyEquivalent == "?") {
            shortcut->setKeys({shortcutOf(*item), Qt::Key_F1});
        }
        QObject::connect(shortcut, &QShortcut::activated, &window,
                         [chosen = item.get()] { chosen->action(); });
    }
}

}  // namespace chimewerk
