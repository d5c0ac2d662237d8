#include "ui/status_icon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>
#include <utility>

namespace chimewerk {

namespace {

// The drawing's own coordinates: a square with sides of this length.
constexpr qreal kSide = 16;

QPainterPath speaker() {
    QPainterPath path;
    path.addRoundedRect(QRectF(1.2, 5.6, 4, 4.8), 0.9, 0.9);
    QPainterPath cone;
    cone.moveTo(3.6, 8);
    cone.lineTo(8.3, 2.2);
    cone.quadTo(9.0, 1.7, 9.0, 2.6);
    cone.lineTo(9.0, 13.4);
    cone.quadTo(9.0, 14.3, 8.3, 13.8);
    cone.closeSubpath();
    return path.united(cone);
}

QPainterPath wave(qreal radius) {
    constexpr qreal kHalfAngle = 48;
    const QPointF center(7.6, 8);
    const QRectF circle(center.x() - radius, center.y() - radius, 2 * radius, 2 * radius);
    QPainterPath path;
    path.arcMoveTo(circle, kHalfAngle);
    path.arcTo(circle, kHalfAngle, -2 * kHalfAngle);
    return path;
}

/// The speaker in the program's violet on a rim of the opposite lightness, one of which any panel shows.
void paintSpeaker(QPainter& painter, const QRectF& place) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = std::min(place.width(), place.height());
    painter.translate(place.center() - QPointF(side / 2, side / 2));
    painter.scale(side / kSide, side / kSide);

    QLinearGradient violet(0, 0, kSide, kSide);
    violet.setColorAt(0, QColor(0x8a, 0x5c, 0xf5));
    violet.setColorAt(1, QColor(0x5b, 0x21, 0xb6));
    const QColor rim(255, 255, 255, 235);
    const QPainterPath waves[] = {wave(4.2), wave(7.0)};
    const QPainterPath body = speaker();

    for (const QPainterPath& arc : waves) {
        painter.strokePath(arc, QPen(rim, 2.9, Qt::SolidLine, Qt::RoundCap));
    }
    painter.strokePath(body, QPen(rim, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const QPainterPath& arc : waves) {
        painter.strokePath(arc, QPen(violet, 1.5, Qt::SolidLine, Qt::RoundCap));
    }
    painter.fillPath(body, violet);
    painter.restore();
}

class StatusIconEngine final : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        paintSpeaker(*painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal /*scale*/) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {44, 44}, {48, 48}, {64, 64}};
    }

    QIconEngine* clone() const override { return new StatusIconEngine(*this); }
};

}  // namespace

QIcon makeStatusIcon() {
    return QIcon(new StatusIconEngine);
}

}  // namespace chimewerk
