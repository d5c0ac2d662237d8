// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/qt_status_item.h"

#include <QString>
#include <utility>

#include "ui/controls/wording.h"
#include "ui/tray/status_icon.h"

namespace chimewerk {

QtStatusItem::QtStatusItem() = default;
QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::show(const Menu& menu, std::function<void()> onActivate) {
    onActivate_ = std::move(onActivate);
    menu_ = std::make_unique<ProgramMenu>(menu);
    watch_ = std::make_unique<TrayWatch>([this] { appear(); }, [this] { announce(); });
}

void QtStatusItem::appear() {
    icon_ = std::make_unique<QSystemTrayIcon>();
    picture();
    icon_->setContextMenu(&menu_->widget());
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, icon_.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             onActivate_();
                         }
                     });
    icon_->show();
    announce();
}

void QtStatusItem::picture() {
    icon_->setIcon(isMuted_ ? makeMutedStatusIcon() : makeStatusIcon());
    icon_->setToolTip(worded(isMuted_ ? "Chimewerk is muted" : "Chimewerk"));
}

void QtStatusItem::showMute(bool isMuted) {
    isMuted_ = isMuted;
    if (menu_ != nullptr) {
        menu_->update();
    }
    if (icon_ != nullptr) {
        picture();
    }
}

void QtStatusItem::announce() {
    if (onShown_) {
        onShown_();
    }
}

}  // namespace chimewerk
