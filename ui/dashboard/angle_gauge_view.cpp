// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/angle_gauge_view.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include "ui/controls/fonts.h"
#include "ui/rules/angle_gauge.h"
#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

QFont::Weight fontWeight(GaugeWeight weight) {
    switch (weight) {
        case GaugeWeight::regular:
            return QFont::Normal;
        case GaugeWeight::semibold:
            return QFont::DemiBold;
        case GaugeWeight::bold:
            return QFont::Bold;
    }
    return QFont::Normal;
}

QFont gaugeFont(const GaugeFont& font) {
    const QFont::Weight weight = fontWeight(font.weight);
    return font.equallyWideDigits ? monospacedDigitSystemFont(font.size, weight)
                                  : systemFont(font.size, weight);
}

GaugeSize measured(const std::string& text, const GaugeFont& font) {
    const QFontMetricsF metrics(gaugeFont(font));
    return {metrics.horizontalAdvance(worded(text)), metrics.height()};
}

QColor roleColor(const ColorScheme& colors, GaugeColor color) {
    switch (color) {
        case GaugeColor::gray:
            return colors.gray;
        case GaugeColor::orange:
            return colors.orange;
        case GaugeColor::blue:
            return colors.blue;
        case GaugeColor::label:
            return colors.label;
        case GaugeColor::tertiaryLabel:
            return colors.tertiaryLabel;
        case GaugeColor::quaternaryLabel:
            return colors.quaternaryLabel;
    }
    return colors.label;
}

/// Paints the gauge's shapes, whose y axis points up from the bottom of the area.
class ShapePainter {
public:
    ShapePainter(QPainter& painter, const ColorScheme& colors, const QRectF& area)
        : painter_(painter), colors_(colors), area_(area) {}

    void operator()(const GaugeFace& face) {
        QPainterPath path(point(face.center));
        path.arcTo(circle(face.center, face.radius), 0, 180);
        path.closeSubpath();
        painter_.fillPath(path, color(face.paint));
    }

    void operator()(const GaugeRim& rim) {
        QPainterPath path;
        path.arcMoveTo(circle(rim.center, rim.radius), 0);
        path.arcTo(circle(rim.center, rim.radius), 0, 180);
        painter_.strokePath(path, pen(rim.paint, rim.width));
    }

    void operator()(const GaugeLine& line) {
        painter_.setPen(pen(line.paint, line.width));
        painter_.drawLine(point(line.from), point(line.to));
    }

    void operator()(const GaugeHub& hub) {
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(color(hub.paint));
        painter_.drawEllipse(point(hub.center), hub.radius, hub.radius);
    }

    void operator()(const GaugeText& text) {
        const QFont font = gaugeFont(text.font);
        painter_.setFont(font);
        painter_.setPen(roleColor(colors_, text.color));
        const QPointF baseline = point(text.origin) - QPointF(0, QFontMetricsF(font).descent());
        painter_.drawText(baseline, worded(text.text));
    }

private:
    QPointF point(GaugePoint point) const {
        return {area_.left() + point.x, area_.bottom() - point.y};
    }

    QRectF circle(GaugePoint center, double radius) const {
        const QPointF middle = point(center);
        return {middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius};
    }

    QColor color(const GaugePaint& paint) const {
        QColor color = roleColor(colors_, paint.color);
        color.setAlphaF(color.alphaF() * static_cast<float>(paint.alpha));
        return color;
    }

    QPen pen(const GaugePaint& paint, double width) const {
        return {color(paint), width, Qt::SolidLine, Qt::FlatCap};
    }

    QPainter& painter_;
    const ColorScheme& colors_;
    const QRectF area_;
};

}  // namespace

AngleGaugeView::AngleGaugeView(QWidget* parent) : QWidget(parent) {
    setContentsMargins(kOverhang, kOverhang, kOverhang, 0);
    setAccessibleName(worded("Lid angle"));
    setAccessibleDescription(worded(gaugeDescription({})));
}

void AngleGaugeView::paintEvent(QPaintEvent*) {
    const GaugeState state{currentAngle, threshold, sensorAvailable};
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = contentsRect();
    ShapePainter paint(painter, colorSchemeOf(*this), area);
    for (const GaugeShape& shape : gaugeShapes({area.width(), area.height()}, state, measured)) {
        std::visit(paint, shape);
    }
    // The description changes with the picture, so that the two agree.
    const QString description = worded(gaugeDescription(state));
    if (accessibleDescription() != description) {
        setAccessibleDescription(description);
    }
}

}  // namespace chimewerk
