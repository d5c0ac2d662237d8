// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QString>
#include <QWidget>
#include <memory>
#include <string>

#include "app/menu.h"
#include "app/windows.h"
#include "platform/notification_center.h"

class QLabel;
class QTextDocument;
class QUrl;

namespace chimewerk {

/// The guide's window: a coloured header with the program's name above a scrolling text. It
/// starts hidden; closing it hides it and keeps the position in the text. It is light or dark
/// like the desktop.
class HelpWindowController final : public Window {
public:
    /// `manual` is the absolute path of the manual that the guide's last words lead to. The keys of
    /// the menu's entries work in the window; `menu` outlives it, and `notifications` too.
    HelpWindowController(const std::string& manual, const Menu& menu,
                         NotificationCenter& notifications);

    /// Shows the window, in front of the others if the desktop permits.
    void showWindow() override;

    QWidget& window() { return *window_; }

private:
    void buildUI(const QUrl& manual);
    /// Fills an empty document with the guide.
    static void buildContent(QTextDocument& document, const QUrl& manual);
    /// Returns a label for the header: white, on one line, with opacity `alpha`, 0 to 1.
    static QLabel* heroLabel(const QString& text, int size, QFont::Weight weight,
                             double alpha = 1.0);

    const std::unique_ptr<QWidget> window_;
    NotificationCenter::Subscription contrast_;
};

}  // namespace chimewerk
