#pragma once

#include <QSlider>
#include <functional>
#include <string>

namespace chimewerk {

/// A horizontal slider over real numbers that are shown in a unit of their own, such as 0.0 to 1.0 as 0% to
/// 100%. The arrow keys move by one of these units, a click moves the knob to where it was made, and
/// assistive programs are told the number and the text that are shown.
class ValueSlider final : public QSlider {
public:
    using Text = std::function<std::string(float number)>;

    struct Range {
        /// In the unit that is shown.
        int minimum;
        int maximum;
        /// What one of these units is worth.
        double unit;
    };

    ValueSlider(const Range& range, Text text);

    /// The number that it stands at, to a tenth of the unit.
    float number() const;
    /// Moves it there, or as near as it can go, without telling anyone.
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
