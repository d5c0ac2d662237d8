// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/control_painting.h"

#include <QBitmap>
#include <QPainterPath>
#include <QStyle>
#include <algorithm>

#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/emoji_text.h"

namespace chimewerk {

namespace {

constexpr qreal kRadius = 5.5;
constexpr int kMenuInset = 4;
constexpr int kMenuRadius = 8;
constexpr int kMenuTextInset = 24;

/// Saves a painter's state, switches antialiasing on and restores the state at the end of
/// the scope.
class Painting {
public:
    explicit Painting(QPainter& painter) : painter_(painter) {
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
    }
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    ~Painting() { painter_.restore(); }

private:
    QPainter& painter_;
};

bool isDark(const QStyleOption& option) {
    return colorSchemeOf(option.palette).isDark();
}

bool isEnabled(const QStyleOption& option) {
    return (option.state & QStyle::State_Enabled) != 0;
}

bool isPressed(const QStyleOption& option) {
    return (option.state & QStyle::State_Sunken) != 0;
}

bool isHovered(const QStyleOption& option) {
    return isEnabled(option) && (option.state & QStyle::State_MouseOver) != 0;
}

QColor faded(QColor color, const QStyleOption& option) {
    if (!isEnabled(option)) {
        color.setAlphaF(color.alphaF() * 0.45F);
    }
    return color;
}

QColor controlFill(const QStyleOption& option) {
    if (isDark(option)) {
        return faded(QColor(255, 255, 255,
                            isPressed(option)   ? 58
                            : isHovered(option) ? 42
                                                : 28),
                     option);
    }
    return isPressed(option)   ? QColor(0xe2, 0xe2, 0xe6)
           : isHovered(option) ? QColor(0xfa, 0xfa, 0xfc)
                               : faded(QColor(Qt::white), option);
}

QColor controlBorder(const QStyleOption& option) {
    return faded(colorSchemeOf(option.palette).controlEdge, option);
}

QColor accentFill(const QStyleOption& option) {
    const QColor accent = option.palette.color(QPalette::Highlight);
    return faded(isPressed(option)   ? accent.darker(115)
                 : isHovered(option) ? accent.lighter(106)
                                     : accent,
                 option);
}

/// Draws a line one pixel wide within the rectangle.
void outline(QPainter& painter, const QRectF& rect, const QColor& color, qreal radius,
             qreal width = 1) {
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    const qreal half = width / 2;
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void fill(QPainter& painter, const QRectF& rect, const QColor& color, qreal radius) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

/// Paints a raised control: fill, edge and, on a light background, the shadow.
void paintRaised(QPainter& painter, const QStyleOption& option, const QRectF& rect) {
    if (!isDark(option) && isEnabled(option)) {
        fill(painter, rect.translated(0, 1), QColor(0, 0, 0, 16), kRadius);
    }
    fill(painter, rect, controlFill(option), kRadius);
    outline(painter, rect, controlBorder(option), kRadius);
}

void strokeCheckMark(QPainter& painter, const QRectF& box, const QColor& color, qreal width) {
    QPainterPath mark;
    mark.moveTo(box.left() + box.width() * 0.25, box.top() + box.height() * 0.53);
    mark.lineTo(box.left() + box.width() * 0.43, box.top() + box.height() * 0.71);
    mark.lineTo(box.left() + box.width() * 0.76, box.top() + box.height() * 0.30);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(mark);
}

void strokeChevron(QPainter& painter, QPointF center, bool up, const QColor& color) {
    const qreal height = up ? -2.0 : 2.0;
    QPainterPath chevron;
    chevron.moveTo(center + QPointF(-3, -height / 2));
    chevron.lineTo(center + QPointF(0, height / 2));
    chevron.lineTo(center + QPointF(3, -height / 2));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(chevron);
}

void strokeSubmenuArrow(QPainter& painter, const QStyleOption& option, const QColor& color) {
    const bool mirrored = option.direction == Qt::RightToLeft;
    painter.save();
    painter.translate(mirrored ? option.rect.left() + 15 : option.rect.right() - 15,
                      QRectF(option.rect).center().y());
    painter.rotate(mirrored ? 90 : -90);
    strokeChevron(painter, {}, false, color);
    painter.restore();
}

/// Returns the shape of a control, lower than its rectangle to leave room for the shadow.
QRectF shapeOf(const QStyleOption& option) {
    return QRectF(option.rect).adjusted(0, 1, 0, -2);
}

}  // namespace

bool showsFocusRing(const QStyleOption& option) {
    const auto both = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    return (option.state & both) == both;
}

void paintFocusRing(QPainter& painter, const QStyleOption& option, const QRect& rect,
                    qreal radius) {
    const Painting painting(painter);
    outline(painter, rect, colorSchemeOf(option.palette).accentText, radius, 2);
}

void paintButton(QPainter& painter, const QStyleOption& option, ButtonKind kind) {
    const Painting painting(painter);
    const QRectF rect = shapeOf(option);
    if (kind == ButtonKind::standard) {
        fill(painter, rect, accentFill(option), kRadius);
    } else {
        paintRaised(painter, option, rect);
    }
    if (kind == ButtonKind::destructive) {
        QColor edge = colorSchemeOf(option.palette).red;
        edge.setAlphaF(0.8F);
        outline(painter, rect, faded(edge, option), kRadius);
    }
    if (!showsFocusRing(option)) {
        return;
    }
    outline(painter, rect, colorSchemeOf(option.palette).accentText, kRadius, 2);
    if (kind == ButtonKind::standard) {
        outline(painter, rect.adjusted(2, 2, -2, -2), Qt::white, kRadius - 2, 1.5);
    }
}

QColor buttonTextColor(const QStyleOption& option, ButtonKind kind) {
    switch (kind) {
        case ButtonKind::standard:
            return faded(Qt::white, option);
        case ButtonKind::destructive:
            return faded(colorSchemeOf(option.palette).red, option);
        case ButtonKind::plain:
            break;
    }
    return option.palette.color(isEnabled(option) ? QPalette::Normal : QPalette::Disabled,
                                QPalette::ButtonText);
}

void paintCheckBox(QPainter& painter, const QStyleOption& option) {
    const Painting painting(painter);
    const QRectF box(option.rect);
    constexpr qreal kBoxRadius = 4;
    if ((option.state & QStyle::State_On) != 0) {
        fill(painter, box, accentFill(option), kBoxRadius);
        strokeCheckMark(painter, box, faded(Qt::white, option), 2);
    } else {
        fill(painter, box, controlFill(option), kBoxRadius);
        outline(painter, box, controlBorder(option), kBoxRadius);
    }
    if (showsFocusRing(option)) {
        outline(painter, box.adjusted(-3, -3, 3, 3), colorSchemeOf(option.palette).accentText,
                kBoxRadius + 3, 2);
    }
}

void paintPopUpButton(QPainter& painter, const QStyleOption& option) {
    const Painting painting(painter);
    const QRectF rect = shapeOf(option);
    paintRaised(painter, option, rect);
    const QPointF center(option.direction == Qt::RightToLeft ? rect.left() + 11 : rect.right() - 11,
                         rect.center().y());
    const QColor color = faded(colorSchemeOf(option.palette).secondaryLabel, option);
    strokeChevron(painter, center - QPointF(0, 3), true, color);
    strokeChevron(painter, center + QPointF(0, 3), false, color);
    if (showsFocusRing(option)) {
        outline(painter, rect, colorSchemeOf(option.palette).accentText, kRadius, 2);
    }
}

void paintSliderGroove(QPainter& painter, const QStyleOptionSlider& option, const QRect& groove,
                       const QRect& handle) {
    const Painting painting(painter);
    QRectF track(groove.left() + 1, groove.center().y() - 1.5, groove.width() - 4, 4);
    fill(painter, track, controlBorder(option), 2);
    if (option.upsideDown) {
        track.setLeft(handle.center().x());
    } else {
        track.setRight(handle.center().x());
    }
    fill(painter, track, accentFill(option), 2);
}

void paintSliderHandle(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle) {
    const Painting painting(painter);
    const QRectF knob = QRectF(handle).adjusted(2, 2, -2, -2);
    const qreal radius = knob.width() / 2;
    fill(painter, knob.translated(0, 1), QColor(0, 0, 0, isDark(option) ? 90 : 36), radius);
    const bool active =
        (option.activeSubControls & QStyle::SC_SliderHandle) != 0 && isPressed(option);
    const QColor face = isDark(option) ? QColor(0xd8, 0xd8, 0xdc) : QColor(Qt::white);
    const QColor dulled = isDark(option) ? QColor(0x70, 0x70, 0x74) : QColor(0xf2, 0xf2, 0xf4);
    fill(painter, knob, !isEnabled(option) ? dulled : active ? face.darker(108) : face, radius);
    outline(painter, knob, isDark(option) ? QColor(0, 0, 0, 60) : controlBorder(option), radius);
    if (showsFocusRing(option)) {
        outline(painter, handle, colorSchemeOf(option.palette).accentText, handle.width() / 2.0, 2);
    }
}

void paintScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle,
                    qreal opacity) {
    if (!isEnabled(option) || option.maximum <= option.minimum) {
        return;
    }
    const Painting painting(painter);
    painter.setOpacity(opacity);
    const bool upright = option.orientation == Qt::Vertical;
    // Thin until the pointer comes near.
    const qreal aside = isHovered(option) || isPressed(option) ? 2 : 4;
    const QRectF thumb = upright ? QRectF(handle).adjusted(aside, 3, -2, -3)
                                 : QRectF(handle).adjusted(3, aside, -3, -2);
    const int strength = isPressed(option) || ColorScheme::isHighContrast() ? 180
                         : isHovered(option)                                ? 150
                                                                            : 115;
    const QColor color =
        isDark(option) ? QColor(255, 255, 255, strength) : QColor(0, 0, 0, strength);
    fill(painter, thumb, color, std::min(thumb.width(), thumb.height()) / 2);
}

void paintTextField(QPainter& painter, const QStyleOption& option) {
    const Painting painting(painter);
    const QRectF rect(option.rect);
    const bool focused = (option.state & QStyle::State_HasFocus) != 0;
    fill(painter, rect, option.palette.color(QPalette::Base), kRadius);
    outline(painter, rect,
            focused ? colorSchemeOf(option.palette).accentText : controlBorder(option), kRadius,
            focused ? 2 : 1);
}

QRegion roundedMenuShape(const QRect& window) {
    QBitmap mask(window.size());
    mask.clear();
    QPainter painter(&mask);
    painter.setBrush(Qt::color1);
    painter.setPen(Qt::color1);
    painter.drawRoundedRect(mask.rect().adjusted(0, 0, -1, -1), kMenuRadius, kMenuRadius);
    painter.end();
    return mask;
}

void paintMenuFrame(QPainter& painter, const QStyleOption& option) {
    const Painting painting(painter);
    outline(painter, QRectF(option.rect), colorSchemeOf(option.palette).disabledLabel, kMenuRadius);
}

void paintMenuItem(QPainter& painter, const QStyleOptionMenuItem& option) {
    const Painting painting(painter);
    const ColorScheme& colors = colorSchemeOf(option.palette);
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(
            QRectF(option.rect.left() + 12, option.rect.center().y(), option.rect.width() - 24, 1),
            colors.separator);
        return;
    }
    const bool selected = isEnabled(option) && (option.state & QStyle::State_Selected) != 0;
    if (selected) {
        fill(painter, QRectF(option.rect).adjusted(kMenuInset, 0, -kMenuInset, 0), colors.accent,
             4.5);
    }
    const QColor color = selected            ? QColor(Qt::white)
                         : isEnabled(option) ? colors.label
                                             : colors.disabledLabel;
    const QRect content = option.rect.adjusted(kMenuTextInset, 0, -12, 0);
    painter.setFont(option.font);
    if (option.checked) {
        const QRect mark =
            QStyle::visualRect(option.direction, option.rect,
                               QRect(option.rect.left() + 8, option.rect.center().y() - 6, 13, 13));
        strokeCheckMark(painter, mark, color, 1.8);
    }
    painter.setPen(color);
    const QStringList parts = option.text.split(QLatin1Char('\t'));
    const QRect place = QStyle::visualRect(option.direction, option.rect, content);
    constexpr int kFlags = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic;
    drawText(painter, place, kFlags | Qt::AlignLeft,
             elided(option.font, parts.value(0), place.width()));
    if (parts.size() > 1) {
        painter.setPen(selected ? color : colors.tertiaryLabel);
        painter.drawText(place, kFlags | Qt::AlignRight, parts[1]);
    }
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        strokeSubmenuArrow(painter, option, color);
    }
}

}  // namespace chimewerk
