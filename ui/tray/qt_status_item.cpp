// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/qt_status_item.h"

#include <QString>
#include <utility>

#include "ui/tray/status_icon.h"

namespace chimewerk {

namespace {

QString titleOf(const MenuItem& item) {
    // A single ampersand would mark a mnemonic.
    return QString::fromStdString(item.title).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QKeySequence shortcutOf(const MenuItem& item) {
    return QKeySequence(QLatin1String("Ctrl+") +
                        QString::fromStdString(item.keyEquivalent).toUpper());
}

}  // namespace

QtStatusItem::QtStatusItem() = default;
QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::show(const Menu& menu, std::function<void()> onActivate) {
    onActivate_ = std::move(onActivate);
    fill(menu_, menu);
    showMarks();
    watch_ = std::make_unique<TrayWatch>([this] { appear(); });
}

void QtStatusItem::appear() {
    icon_ = std::make_unique<QSystemTrayIcon>(makeStatusIcon());
    icon_->setToolTip(QStringLiteral("Chimewerk"));
    icon_->setContextMenu(&menu_);
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, icon_.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             onActivate_();
                         }
                     });
    icon_->show();
}

void QtStatusItem::fill(QMenu& menu, const Menu& items) {
    QActionGroup* radios = nullptr;
    for (const auto& item : items) {
        if (item->isSeparator()) {
            menu.addSeparator();
            continue;
        }
        if (!item->submenu.empty()) {
            fill(*menu.addMenu(titleOf(*item)), item->submenu);
            continue;
        }
        QAction* const action = menu.addAction(titleOf(*item));
        action->setEnabled(item->isEnabled());
        if (!item->keyEquivalent.empty()) {
            action->setShortcut(shortcutOf(*item));
        }
        if (item->isRadio) {
            radios = radios == nullptr ? new QActionGroup(&menu) : radios;
            action->setCheckable(true);
            radios->addAction(action);
            marked_.push_back({action, item.get()});
        }
        if (item->action) {
            QObject::connect(action, &QAction::triggered, action, [this, chosen = item.get()] {
                chosen->action();
                showMarks();
            });
        }
    }
}

void QtStatusItem::showMarks() {
    for (const Entry& entry : marked_) {
        entry.action->setChecked(entry.item->isOn);
    }
}

}  // namespace chimewerk
