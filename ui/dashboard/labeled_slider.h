// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "sound/sound_manager.h"
#include "ui/controls/labels_and_buttons.h"
#include "ui/controls/value_slider.h"
#include "ui/dashboard/panel_box.h"

namespace chimewerk {

/// A slider with a heading and its number as text.
class LabeledSlider final : public PanelBox {
public:
    struct Settings {
        std::string_view heading;
        /// For assistive programs.
        std::string_view name;
        ValueSlider::Range range;
        ValueSlider::Text text;
        /// Lengths in device-independent pixels.
        int width = 0;
        int gap = 0;
    };

    /// `onChange` is called with each number that the user chooses. The numbers of one drag are
    /// written to the settings once, at its end. The library must outlive the slider.
    LabeledSlider(QWidget* parent, const Settings& settings, SoundManager& sounds,
                  std::function<void(float number)> onChange);

    /// Shows this number, or the nearest possible one, and this text. Does not call `onChange`.
    void display(float number, const std::string& text);
    void setSliderEnabled(bool enabled) { slider_->setEnabled(enabled); }

protected:
    void fill(Column& column) override;

private:
    const int width_;
    const int gap_;
    QLabel* const section_;
    ValueSlider* const slider_;
    QLabel* const valueLabel_;
    /// Delays writing during a drag.
    std::shared_ptr<const void> heldWrites_;
};

}  // namespace chimewerk
