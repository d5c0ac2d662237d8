// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/qt_status_item.h"

#include <QString>
#include <QTimer>
#include <utility>

#include "ui/toolkit/wording.h"
#include "ui/tray/status_icon.h"

namespace chimewerk {

QtStatusItem::QtStatusItem()
    : watch_({.onTray = [this] { appear(); }, .onChange = [this] { announce(); }}) {
    // While the tray answers.
    draw();
}

QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::show(const Menu& menu, std::function<void()> onActivate) {
    onActivate_ = std::move(onActivate);
    items_ = &menu;
    if (icon_ != nullptr) {
        addMenu();
    }
}

void QtStatusItem::appear() {
    icon_ = std::make_unique<QSystemTrayIcon>();
    usePicture();
    icon_->show();
    if (watch_.usesHost()) {
        // What comes next at the start would take the processor from the tray.
        TrayWatch::waitForRegistrar();
    }
    if (items_ != nullptr) {
        addMenu();
    }
}

void QtStatusItem::addMenu() {
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

void QtStatusItem::draw() {
    picture_ = isMuted_ ? makeMutedStatusIcon() : makeStatusIcon();
}

void QtStatusItem::usePicture() {
    icon_->setIcon(picture_);
    icon_->setToolTip(worded(isMuted_ ? "Chimewerk is muted" : "Chimewerk"));
}

void QtStatusItem::showMute(bool isMuted) {
    isMuted_ = isMuted;
    draw();
    if (menu_ != nullptr) {
        menu_->update();
    }
    if (icon_ != nullptr) {
        usePicture();
    }
}

void QtStatusItem::announce() {
    if (onShown_) {
        onShown_();
    }
}

}  // namespace chimewerk
