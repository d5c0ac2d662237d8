// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QActionGroup>
#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <vector>

#include "app/status_item.h"
#include "ui/tray/tray_watch.h"

namespace chimewerk {

/// The status item as the toolkit's tray icon. It appears when there is a tray.
class QtStatusItem final : public StatusItem {
public:
    QtStatusItem();
    ~QtStatusItem() override;

    void show(const Menu& menu, std::function<void()> onActivate) override;

private:
    struct Entry {
        QAction* action;
        const MenuItem* item;
    };

    void fill(QMenu& menu, const Menu& items);
    void showMarks();
    void appear();

    QMenu menu_;
    std::vector<Entry> marked_;
    std::function<void()> onActivate_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    std::unique_ptr<TrayWatch> watch_;
};

}  // namespace chimewerk
