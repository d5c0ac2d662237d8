// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QIcon>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <utility>

#include "app/status_item.h"
#include "ui/tray/program_menu.h"
#include "ui/tray/tray_watch.h"

namespace chimewerk {

/// The program's icon, as the toolkit's tray icon. From its construction on it looks for a tray, and
/// appears in it. A tray asks for the menu a moment later.
class QtStatusItem final : public StatusItem {
public:
    QtStatusItem();
    ~QtStatusItem() override;

    /// Whether it is known if there is a tray, or nobody has answered for a moment.
    bool knowsTray() const { return watch_.isKnown(); }
    void show(const Menu& menu, std::function<void()> onActivate) override;

    void showMute(bool isMuted) override;
    bool isShown() const override { return icon_ != nullptr && watch_.isThere(); }
    void whenShown(std::function<void()> job) override { onShown_ = std::move(job); }

private:
    void appear();
    void addMenu();
    void announce();
    void draw();
    void usePicture();

    bool isMuted_ = false;
    QIcon picture_;
    const Menu* items_ = nullptr;
    std::unique_ptr<ProgramMenu> menu_;
    std::function<void()> onActivate_;
    std::function<void()> onShown_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    TrayWatch watch_;
};

}  // namespace chimewerk
