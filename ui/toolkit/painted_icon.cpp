// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/painted_icon.h"

#include <QIconEngine>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>

namespace chimewerk {

namespace {

class PaintedIconEngine final : public QIconEngine {
public:
    explicit PaintedIconEngine(PaintPicture picture) : picture_(picture) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/,
               QIcon::State /*state*/) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const int side = std::min(rect.width(), rect.height());
        QRectF square(0, 0, side, side);
        square.moveCenter(QRectF(rect).center());
        picture_(*painter, square);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal /*scale*/) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {44, 44}, {48, 48}, {64, 64}};
    }

    QIconEngine* clone() const override { return new PaintedIconEngine(*this); }

private:
    const PaintPicture picture_;
};

QLinearGradient gradient(QPointF from, QPointF to, const QColor& start, const QColor& end) {
    QLinearGradient colors(from, to);
    colors.setColorAt(0, start);
    colors.setColorAt(1, end);
    return colors;
}

/// The picture of the icon's file, in that file's coordinates: a square with sides of 128.
void paintProgram(QPainter& painter, const QRectF& square) {
    painter.translate(square.topLeft());
    painter.scale(square.width() / 128, square.height() / 128);
    painter.setPen(Qt::NoPen);
    painter.setBrush(
        gradient({24, 8}, {104, 120}, QColor(0x84, 0x40, 0xdd), QColor(0x38, 0x14, 0x99)));
    painter.drawRoundedRect(QRectF(8, 8, 112, 112), 28, 28);

    QPainterPath speaker(QPointF(24, 51));
    speaker.lineTo(37, 51);
    speaker.lineTo(53, 36.3);
    speaker.cubicTo(56, 33.6, 60.7, 35.7, 60.7, 39.7);
    speaker.lineTo(60.7, 88.3);
    speaker.cubicTo(60.7, 92.3, 56, 94.4, 53, 91.7);
    speaker.lineTo(37, 77);
    speaker.lineTo(24, 77);
    speaker.quadTo(18, 77, 18, 71);
    speaker.lineTo(18, 57);
    speaker.quadTo(18, 51, 24, 51);
    painter.setBrush(gradient({20, 34}, {62, 96}, Qt::white, QColor(0xd9, 0xcb, 0xf5)));
    painter.drawPath(speaker);

    painter.setBrush(
        gradient({69, 30}, {109, 98}, QColor(0xff, 0xe9, 0xa6), QColor(0xf5, 0xa6, 0x23)));
    for (const auto& [left, top] : {std::pair{69.0, 49.0}, {84.0, 39.5}, {99.0, 30.0}}) {
        painter.drawRoundedRect(QRectF(left, top, 10.5, 128 - 2 * top), 5.25, 5.25);
    }
}

}  // namespace

QIcon paintedIcon(PaintPicture paint) {
    return QIcon(new PaintedIconEngine(paint));
}

QIcon programIcon() {
    return paintedIcon(paintProgram);
}

}  // namespace chimewerk
