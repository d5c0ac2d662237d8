// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/angle_box.h"

#include <utility>

#include "ui/rules/detail_texts.h"
#include "ui/rules/value_texts.h"

namespace chimewerk {

AngleBox::AngleBox(QWidget* panel, SoundManager& sounds,
                   std::function<void(float degrees)> onChange)
    : PanelBox(panel),
      angleGauge_(new AngleGaugeView(this)),
      thresholdSlider_(new LabeledSlider(this,
                                         {.heading = detail_texts::kAngleSection,
                                          .name = "Trigger Angle",
                                          .range = {.minimum = 10, .maximum = 170, .unit = 1.0},
                                          .text = degreesText,
                                          .width = 200,
                                          .gap = 10},
                                         sounds, std::move(onChange))) {
    setContentsMargins(angleGauge_->contentsMargins());
}

void AngleBox::display(const DetailView& view) {
    thresholdSlider_->display(view.threshold, view.thresholdText);
    thresholdSlider_->setSliderEnabled(view.thresholdIsEnabled);
    angleGauge_->sensorAvailable = view.thresholdIsEnabled;
    setThreshold(view.threshold);
}

void AngleBox::setCurrentAngle(float degrees) {
    angleGauge_->currentAngle = degrees;
    angleGauge_->update();
}

void AngleBox::setThreshold(float degrees) {
    angleGauge_->threshold = degrees;
    angleGauge_->update();
}

void AngleBox::fill(Column& column) {
    const QMargins beyond = contentsMargins();
    angleGauge_->setGeometry(0, 0, beyond.left() + column.width() + beyond.right(),
                             beyond.top() + gaugeHeight_);
    column.skip(gaugeHeight_ + 8);
    column.skipTo(thresholdSlider_->arrange({beyond.left(), column.bottom()}, column.width()));
    column.skip(4);
}

}  // namespace chimewerk
