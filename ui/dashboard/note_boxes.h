// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string_view>

#include "ui/controls/labels_and_buttons.h"
#include "ui/dashboard/panel_box.h"
#include "ui/rules/detail_view.h"

namespace chimewerk {

/// Explains when an event triggers, and warns if it is on but will be silent.
class TriggerBox final : public PanelBox {
public:
    explicit TriggerBox(QWidget* panel);

    void display(const DetailView& view);

protected:
    void fill(Column& column) override;

private:
    QLabel* const triggerSection_;
    QLabel* const triggerInfo_;
    QLabel* const silence_;
};

/// Explains a permission that an event needs, with a button below to change it.
class PermissionBox final : public PanelBox {
public:
    PermissionBox(QWidget* panel, const std::function<void()>& onClick);

    /// Shows texts of the rules; no button if its title is empty.
    void display(std::string_view text, std::string_view buttonTitle);

protected:
    void fill(Column& column) override;

private:
    QLabel* const permissionText_;
    QPushButton* const grantBtn_;
};

/// Explains that the lid-angle event cannot work on this machine.
class LockBox final : public PanelBox {
public:
    explicit LockBox(QWidget* panel);

protected:
    void fill(Column& column) override;

private:
    QLabel* const lockEmoji_;
    QLabel* const lockTitle_;
    QLabel* const lockText_;
};

}  // namespace chimewerk
