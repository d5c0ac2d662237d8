// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/tray/status_icon.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/toolkit/painted_icon.h"

namespace chimewerk {

namespace {

// The drawing's own coordinates: a square with this side.
constexpr qreal kSide = 16;

QPainterPath speaker() {
    QPainterPath path;
    path.moveTo(4, 5);
    path.lineTo(6.35, 2.45);
    path.quadTo(7.9, 1.5, 8, 3.1);
    path.lineTo(8, 12.9);
    path.quadTo(7.9, 14.5, 6.35, 13.55);
    path.lineTo(4, 11);
    path.lineTo(2, 11);
    path.quadTo(1, 11, 1, 10);
    path.lineTo(1, 6);
    path.quadTo(1, 5, 2, 5);
    path.closeSubpath();
    return path;
}

/// Returns the speaker, and two chime bars that grow like its waves.
QPainterPath soundingSpeaker() {
    QPainterPath path = speaker();
    path.addRoundedRect(QRectF(10, 5, 2, 6), 1, 1);
    path.addRoundedRect(QRectF(13, 2, 2, 12), 1, 1);
    return path;
}

/// Returns the speaker, and a cross in place of the bars.
QPainterPath mutedSpeaker() {
    QPainterPath bars;
    bars.addRoundedRect(QRectF(-3.4, -0.9, 6.8, 1.8), 0.9, 0.9);
    bars.addRoundedRect(QRectF(-0.9, -3.4, 1.8, 6.8), 0.9, 0.9);
    bars.setFillRule(Qt::WindingFill);
    return speaker().united(QTransform().translate(12.2, 8).rotate(45).map(bars.simplified()));
}

/// Paints the speaker in dark violet with a light rim, so that one of the two contrasts with
/// every panel.
void paint(const QPainterPath& body, QPainter& painter, const QRectF& square) {
    painter.translate(square.topLeft());
    painter.scale(square.width() / kSide, square.height() / kSide);
    QLinearGradient violet(0, 0, kSide, kSide);
    violet.setColorAt(0, QColor(0x8a, 0x5c, 0xf5));
    violet.setColorAt(1, QColor(0x5b, 0x21, 0xb6));
    painter.strokePath(
        body, QPen(QColor(255, 255, 255, 235), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(body, violet);
}

}  // namespace

QIcon makeStatusIcon() {
    return paintedIcon(
        [](QPainter& painter, const QRectF& square) { paint(soundingSpeaker(), painter, square); });
}

QIcon makeMutedStatusIcon() {
    return paintedIcon(
        [](QPainter& painter, const QRectF& square) { paint(mutedSpeaker(), painter, square); });
}

}  // namespace chimewerk
