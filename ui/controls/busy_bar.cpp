// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/busy_bar.h"

#include <QEasingCurve>
#include <QPainter>

#include "ui/toolkit/color_scheme.h"

namespace chimewerk {

namespace {

constexpr int kHeight = 6;
constexpr int kRoundMilliseconds = 2400;
/// The light's share of the width.
constexpr qreal kLight = 0.3;

}  // namespace

BusyBar::BusyBar(int width) {
    setRange(0, 0);
    setTextVisible(false);
    setFixedSize(width, kHeight);
    light_.setStartValue(0.0);
    light_.setKeyValueAt(0.5, 1.0);
    light_.setEndValue(0.0);
    light_.setDuration(kRoundMilliseconds);
    light_.setLoopCount(-1);
    connect(&light_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void BusyBar::paintEvent(QPaintEvent* /*event*/) {
    const ColorScheme& colors = colorSchemeOf(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QRectF bar(rect());
    painter.setBrush(colors.separator);
    painter.drawRoundedRect(bar, kHeight / 2.0, kHeight / 2.0);
    const qreal length = bar.width() * kLight;
    bar.setLeft((bar.width() - length) * light_.currentValue().toReal());
    bar.setWidth(length);
    painter.setBrush(colors.accent);
    painter.drawRoundedRect(bar, kHeight / 2.0, kHeight / 2.0);
}

void BusyBar::showEvent(QShowEvent* event) {
    QProgressBar::showEvent(event);
    light_.start();
}

void BusyBar::hideEvent(QHideEvent* event) {
    light_.stop();
    QProgressBar::hideEvent(event);
}

}  // namespace chimewerk
