// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/dashboard/angle_gauge_view.h"
#include "ui/dashboard/labeled_slider.h"
#include "ui/dashboard/panel_box.h"
#include "ui/rules/detail_view.h"

namespace chimewerk {

/// The lid's angle on a dial, and a slider for the angle at which the event triggers.
class AngleBox final : public PanelBox {
public:
    AngleBox(QWidget* panel, SoundManager& sounds, std::function<void(float degrees)> onChange);

    void display(const DetailView& view);
    void setCurrentAngle(float degrees);
    void setThreshold(float degrees);
    /// In device-independent pixels; takes effect at the next arrangement of the box.
    void setGaugeHeight(int height) { gaugeHeight_ = height; }

protected:
    void fill(Column& column) override;

private:
    AngleGaugeView* const angleGauge_;
    LabeledSlider* const thresholdSlider_;
    int gaugeHeight_ = 0;
};

}  // namespace chimewerk
