// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/switch_control.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <algorithm>

#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/control_painting.h"

namespace chimewerk {

namespace {

constexpr QSize kTrack(38, 22);
constexpr qreal kInset = 2;

QColor mixed(const QColor& from, const QColor& to, float part) {
    const auto between = [part](float a, float b) { return a + (b - a) * part; };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()), between(from.alphaF(), to.alphaF()));
}

void fillRound(QPainter& painter, const QRectF& shape, const QColor& color) {
    painter.setBrush(color);
    painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);
}

}  // namespace

SwitchControl::SwitchControl(QWidget* parent) : QCheckBox(parent) {
    knob_.setStartValue(0.0);
    knob_.setEndValue(0.0);
    knob_.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&knob_, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

QSize SwitchControl::sizeHint() const {
    return kTrack.grownBy({kOverhang, kOverhang, kOverhang, kOverhang});
}

void SwitchControl::checkStateSet() {
    QCheckBox::checkStateSet();
    moveKnob(0);
}

void SwitchControl::nextCheckState() {
    QCheckBox::nextCheckState();
    constexpr int kLongest = 150;
    // The style's duration is 0 if the user wants no animations.
    moveKnob(std::min(kLongest,
                      style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this)));
}

void SwitchControl::moveKnob(int milliseconds) {
    const double wanted = isChecked() ? 1.0 : 0.0;
    if (knob_.endValue().toDouble() == wanted) {
        return;
    }
    const QVariant from = knob_.currentValue();
    knob_.stop();
    knob_.setStartValue(from);
    knob_.setEndValue(wanted);
    knob_.setDuration(milliseconds);
    knob_.start();
}

void SwitchControl::paintEvent(QPaintEvent*) {
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const bool dark = colorSchemeOf(option.palette).isDark();
    const auto on = knob_.currentValue().toFloat();
    const QRectF track(QRect({kOverhang, kOverhang}, kTrack));

    painter.setOpacity(isEnabled() ? 1.0 : 0.5);
    const QColor off = colorSchemeOf(option.palette).controlEdge;
    const QColor color = mixed(off, palette().color(QPalette::Active, QPalette::Highlight), on);
    fillRound(painter, track, isDown() ? color.darker(112) : color);

    const qreal size = track.height() - 2 * kInset;
    const qreal way = track.width() - 2 * kInset - size;
    const qreal place = isRightToLeft() ? 1.0 - static_cast<qreal>(on) : static_cast<qreal>(on);
    const QRectF knob(track.left() + kInset + place * way, track.top() + kInset, size, size);
    fillRound(painter, knob.translated(0, 0.7), QColor(0, 0, 0, 60));
    fillRound(painter, knob, dark && !isEnabled() ? QColor(0xc8, 0xc8, 0xcc) : QColor(Qt::white));
    if (showsFocusRing(option)) {
        painter.setOpacity(1.0);
        paintFocusRing(painter, option, rect(), rect().height() / 2.0);
    }
}

}  // namespace chimewerk
