// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSlider>
#include <functional>
#include <string>

namespace chimewerk {

/// A horizontal slider for real numbers that are shown in another unit, such as 0.0 to 1.0 as 0% to
/// 100%. An arrow key moves it by one unit, and a click moves the knob to the pointer. Assistive
/// programs get the number and the text in that unit.
class ValueSlider final : public QSlider {
public:
    using Text = std::function<std::string(float number)>;

    struct Range {
        /// In the shown unit.
        int minimum;
        int maximum;
        /// The number that is shown as one unit.
        double unit;
    };

    ValueSlider(const Range& range, Text text);

    /// Returns the slider's number, to a tenth of the unit. A whole number of units is never
    /// rounded to less than that, so truncation keeps it.
    float number() const;
    /// Moves the slider to this number, or the nearest possible one, without emitting a signal.
    void setNumber(float number);

    const Range& range() const { return range_; }
    QString text() const { return QString::fromStdString(text_(number())); }

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    int valueAt(int x) const;

    const Range range_;
    const Text text_;
};

}  // namespace chimewerk
