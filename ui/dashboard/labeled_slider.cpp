// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/labeled_slider.h"

#include <utility>

#include "ui/toolkit/wording.h"

namespace chimewerk {

LabeledSlider::LabeledSlider(QWidget* parent, const Settings& settings, SoundManager& sounds,
                             std::function<void(float number)> onChange)
    : PanelBox(parent),
      width_(settings.width),
      gap_(settings.gap),
      section_(add(makeSectionLabel(settings.heading))),
      slider_(add(new ValueSlider(settings.range, settings.text))),
      valueLabel_(add(makeLabel({}, 12, QFont::Normal, LabelColor::secondary))) {
    slider_->setAccessibleName(worded(settings.name));
    connect(slider_, &QSlider::sliderPressed, this,
            [this, &sounds] { heldWrites_ = sounds.holdWrites(); });
    connect(slider_, &QSlider::sliderReleased, this, [this] { heldWrites_ = nullptr; });
    connect(slider_, &QSlider::valueChanged, this, [this, changed = std::move(onChange)] {
        valueLabel_->setText(slider_->text());
        changed(slider_->number());
    });
}

void LabeledSlider::display(float number, const std::string& text) {
    slider_->setNumber(number);
    valueLabel_->setText(QString::fromStdString(text));
}

void LabeledSlider::fill(Column& column) {
    constexpr int kValueWidth = 60;
    column.add(*section_);
    column.skip(6);
    column.addRow({{.widget = *slider_, .width = width_},
                   {.widget = *valueLabel_, .gap = gap_, .width = kValueWidth}});
}

}  // namespace chimewerk
