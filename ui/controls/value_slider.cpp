// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/value_slider.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cmath>
#include <limits>

namespace chimewerk {

namespace {

/// The slider internally counts tenths of the unit.
constexpr int kFineness = 10;

/// The slider's interface for assistive programs; the toolkit's own would report tenths.
class AccessibleValueSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleValueSlider(ValueSlider* slider)
        : QAccessibleWidget(slider, QAccessible::Slider), slider_(slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? slider_->text() : QAccessibleWidget::text(kind);
    }
    QVariant currentValue() const override { return shown(slider_->value()); }
    void setCurrentValue(const QVariant& value) override {
        slider_->setValue(qRound(value.toDouble() * kFineness));
    }
    QVariant maximumValue() const override { return shown(slider_->maximum()); }
    QVariant minimumValue() const override { return shown(slider_->minimum()); }
    QVariant minimumStepSize() const override { return 1.0; }

private:
    static double shown(int tenths) { return static_cast<double>(tenths) / kFineness; }

    ValueSlider* const slider_;
};

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object) {
    auto* const slider = dynamic_cast<ValueSlider*>(object);
    return slider == nullptr ? nullptr : new AccessibleValueSlider(slider);
}

}  // namespace

ValueSlider::ValueSlider(const Range& range, Text text)
    : QSlider(Qt::Horizontal), range_(range), text_(std::move(text)) {
    static const bool kInstalled = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    static_cast<void>(kInstalled);
    setRange(range.minimum * kFineness, range.maximum * kFineness);
    setSingleStep(kFineness);
    setPageStep(10 * kFineness);
}

float ValueSlider::number() const {
    auto number = static_cast<float>(value() * range_.unit / kFineness);
    // The nearest float may lie below a whole unit, and its text is cut off.
    const auto perUnit = static_cast<float>(1 / range_.unit);
    const int wholeUnits = value() / kFineness;
    const auto whole = static_cast<float>(wholeUnits);
    while (number * perUnit < whole) {
        number = std::nextafter(number, std::numeric_limits<float>::infinity());
    }
    return number;
}

void ValueSlider::setNumber(float number) {
    const QSignalBlocker silently(this);
    const double wanted =
        std::isnan(number) ? 0.0 : static_cast<double>(number) / range_.unit * kFineness;
    setValue(static_cast<int>(std::lround(
        std::clamp(wanted, static_cast<double>(minimum()), static_cast<double>(maximum())))));
}

void ValueSlider::mousePressEvent(QMouseEvent* event) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect knob =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    if (event->button() == Qt::LeftButton && !knob.contains(event->position().toPoint())) {
        setSliderPosition(valueAt(event->position().toPoint().x()));
    }
    // The knob is now under the pointer, so the drag begins there.
    QSlider::mousePressEvent(event);
}

int ValueSlider::valueAt(int x) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const int knob = style()->pixelMetric(QStyle::PM_SliderLength, &option, this);
    return QStyle::sliderValueFromPosition(minimum(), maximum(), x - knob / 2, width() - knob,
                                           option.upsideDown);
}

}  // namespace chimewerk
