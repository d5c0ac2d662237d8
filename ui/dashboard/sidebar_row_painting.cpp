// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/sidebar_row_painting.h"

#include <QStyle>
#include <algorithm>

#include "ui/controls/fonts.h"
#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/control_painting.h"
#include "ui/toolkit/emoji_text.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

/// The row's emoji is below the window's title.
constexpr QMargins kSelectionMargins{6, 1, 2, 1};
/// Between the end of the selection and the end of the row's content.
constexpr int kTrailingPadding = 10;
constexpr int kSelectionRadius = 8;

QRect selectionRect(const QRect& cell, Qt::LayoutDirection direction) {
    return QStyle::visualRect(direction, cell, cell.marginsRemoved(kSelectionMargins));
}

/// Maps frames of a row to rectangles of the table.
class Placement {
public:
    Placement(const QRect& cell, Qt::LayoutDirection direction)
        : cell_(cell),
          direction_(direction),
          layout(sidebarRowLayout(cell.width() - kSelectionMargins.left() -
                                  kSelectionMargins.right() - kTrailingPadding)) {}

    QRect operator()(const RowFrame& frame) const {
        const QPoint corner = cell_.topLeft() + QPoint(kSelectionMargins.left(), 0);
        return QStyle::visualRect(
            direction_, cell_,
            QRect(corner + QPoint(frame.x, frame.y), QSize(frame.width, frame.height)));
    }

private:
    const QRect cell_;
    const Qt::LayoutDirection direction_;

public:
    const SidebarRowLayout layout;
};

void paintGround(QPainter& painter, const QStyleOptionViewItem& option, const QColor& color) {
    const QRectF rect(selectionRect(option.rect, option.direction));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, kSelectionRadius, kSelectionRadius);
    if (!showsFocusRing(option)) {
        return;
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colorSchemeOf(option.palette).accentText, 2));
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), kSelectionRadius - 1,
                            kSelectionRadius - 1);
}

void paintLine(QPainter& painter, const QFont& font, const QColor& color, const QRect& rect,
               int alignment, const QString& text) {
    painter.setFont(font);
    painter.setPen(color);
    drawText(painter, rect, alignment | Qt::AlignVCenter | Qt::TextSingleLine,
             elided(font, text, rect.width()));
}

/// A long count takes room from the hint.
void paintHintAndBadge(QPainter& painter, const Placement& place, const SidebarRow& row,
                       const SidebarRowColors& colors) {
    const QFont badgeFont = monospacedDigitSystemFont(10);
    const QString badge = QString::fromStdString(row.badge);
    RowFrame hintFrame = place.layout.hint;
    RowFrame badgeFrame = place.layout.badge;
    const int more = std::max(0, textWidth(badgeFont, badge) - badgeFrame.width);
    badgeFrame.x -= more;
    badgeFrame.width += more;
    hintFrame.width -= more == 0 ? 0 : more + 4;
    paintLine(painter, systemFont(11), colors.hint, place(hintFrame), Qt::AlignLeft,
              QString::fromStdString(row.hint));
    paintLine(painter, badgeFont, colors.badge, place(badgeFrame), Qt::AlignRight, badge);
}

void paintSwitch(QPainter& painter, const QStyleOptionViewItem& option, const Placement& place,
                 const SidebarRow& row) {
    if (!row.isOn) {
        paintLine(painter, systemFont(13), Qt::black, place(place.layout.lock), Qt::AlignHCenter,
                  QString::fromUtf8(kLockEmoji));
        return;
    }
    QStyleOption box = option;
    box.rect = place(place.layout.checkBox);
    box.state = QStyle::State_Enabled | (*row.isOn ? QStyle::State_On : QStyle::State_Off);
    paintCheckBox(painter, box);
}

}  // namespace

SidebarRowColors sidebarRowColors(const QPalette& palette, QStyle::State state, double alpha) {
    const ColorScheme& colors = colorSchemeOf(palette);
    const QColor ground = palette.color(QPalette::Window);
    SidebarRowColors row;
    row.ground = ground;
    if ((state & QStyle::State_Selected) != 0) {
        row.ground = blended(
            (state & QStyle::State_Active) != 0 ? colors.selection : colors.idleSelection, ground);
    } else if ((state & QStyle::State_MouseOver) != 0) {
        row.ground = blended(colors.hover, ground);
    }
    const auto text = [&](const QColor& color) {
        return alpha < 1 ? dimmed(color, alpha, row.ground) : color;
    };
    row.name = text(colors.label);
    row.hint = text(colors.secondaryLabel);
    row.badge = text(colors.tertiaryLabel);
    return row;
}

void paintSidebarRow(QPainter& painter, const QStyleOptionViewItem& option, const SidebarRow& row) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setLayoutDirection(option.direction);
    const SidebarRowColors colors = sidebarRowColors(option.palette, option.state, row.alpha);
    paintGround(painter, option, colors.ground);

    const Placement place(option.rect, option.direction);
    QRect emoji = place(place.layout.emoji);
    emoji.moveTop(option.rect.center().y() - emoji.height() / 2);
    painter.setOpacity(row.alpha);
    paintLine(painter, systemFont(22), colors.name, emoji, Qt::AlignLeft,
              QString::fromStdString(row.emoji));
    painter.setOpacity(1);
    paintLine(painter, systemFont(13, QFont::Medium), colors.name, place(place.layout.name),
              Qt::AlignLeft, worded(row.name));
    paintHintAndBadge(painter, place, row, colors);
    paintSwitch(painter, option, place, row);
    painter.restore();
}

QRect sidebarCheckBoxArea(const QRect& cell, Qt::LayoutDirection direction) {
    constexpr int kReach = 6;
    const Placement place(cell, direction);
    return place(place.layout.checkBox).marginsAdded({kReach, kReach, kReach, kReach});
}

}  // namespace chimewerk
