// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The smallest tray program on this toolkit: an icon with a menu that can quit it. A yardstick.
#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argumentCount, char** arguments) {
    QApplication application(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    QMenu menu;
    QObject::connect(menu.addAction("Quit"), &QAction::triggered, &QApplication::quit);
    QPixmap square(22, 22);
    square.fill(Qt::blue);
    QSystemTrayIcon icon{QIcon(square)};
    icon.setContextMenu(&menu);
    icon.show();
    return QApplication::exec();
}
