// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <utility>

#include "app/status_item.h"
#include "ui/tray/program_menu.h"
#include "ui/tray/tray_watch.h"

namespace chimewerk {

/// The program's icon, as the toolkit's tray icon. It appears when there is a tray, for which it looks
/// from its construction on.
class QtStatusItem final : public StatusItem {
public:
    /// `onTrayKnown` is called once, from the event loop: it is known whether there is a tray, or
    /// nobody has answered for a moment. An icon that is shown from then on appears at once.
    explicit QtStatusItem(std::function<void()> onTrayKnown);
    ~QtStatusItem() override;

    void show(const Menu& menu, std::function<void()> onActivate) override;

    void showMute(bool isMuted) override;
    bool isShown() const override { return icon_ != nullptr && watch_.isThere(); }
    void whenShown(std::function<void()> job) override { onShown_ = std::move(job); }

private:
    void useTray();
    void appear();
    void announce();
    void picture();

    bool hasTray_ = false;
    bool isMuted_ = false;
    const Menu* items_ = nullptr;
    std::unique_ptr<ProgramMenu> menu_;
    std::function<void()> onActivate_;
    std::function<void()> onShown_;
    std::unique_ptr<QSystemTrayIcon> icon_;
    TrayWatch watch_;
};

}  // namespace chimewerk
