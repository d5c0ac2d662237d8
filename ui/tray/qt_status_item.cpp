// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/qt_status_item.h"

#include <QString>
#include <QTimer>
#include <utility>

#include "ui/controls/wording.h"
#include "ui/tray/status_icon.h"

namespace chimewerk {

QtStatusItem::QtStatusItem(std::function<void()> onTrayKnown)
    : watch_({.onTray = [this] { useTray(); },
              .onChange = [this] { announce(); },
              .onKnown = std::move(onTrayKnown)}) {}

QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::show(const Menu& menu, std::function<void()> onActivate) {
    onActivate_ = std::move(onActivate);
    items_ = &menu;
    if (hasTray_) {
        appear();
    }
}

void QtStatusItem::useTray() {
    hasTray_ = true;
    if (items_ != nullptr) {
        appear();
    }
}

void QtStatusItem::appear() {
    icon_ = std::make_unique<QSystemTrayIcon>();
    picture();
    // First of all, because the tray, another process, asks for the rest only later.
    icon_->show();
    menu_ = std::make_unique<ProgramMenu>(*items_,
                                          watch_.usesHost() ? MenuPlace::Bus : MenuPlace::Window);
    icon_->setContextMenu(&menu_->widget());
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, icon_.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             onActivate_();
                         }
                     });
    QTimer::singleShot(0, icon_.get(), [this] { announce(); });
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
