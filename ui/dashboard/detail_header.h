// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>

#include "ui/controls/labels_and_buttons.h"
#include "ui/controls/switch_control.h"
#include "ui/dashboard/panel_box.h"
#include "ui/rules/detail_view.h"

namespace chimewerk {

/// The top of the detail panel: the event's name, its switch and its count.
class DetailHeader final : public PanelBox {
public:
    /// `onToggle` is called when the user has moved the switch.
    DetailHeader(QWidget* panel, const std::function<void()>& onToggle);

    void display(const DetailView& view);
    void showCounter(std::int64_t triggerCount);

    bool isOn() const { return enableSwitch_->isChecked(); }
    /// Returns the area of the switch in the panel.
    QRect switchArea() const { return enableSwitch_->geometry().translated(pos()); }

protected:
    void fill(Column& column) override;

private:
    QLabel* const eventEmoji_;
    QLabel* const eventTitle_;
    SwitchControl* const enableSwitch_;
    QLabel* const counterLabel_;
};

}  // namespace chimewerk
