// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/sidebar_row_painting.h"

#include <QStyle>
#include <algorithm>

#include "ui/controls/color_scheme.h"
#include "ui/controls/control_painting.h"
#include "ui/controls/emoji_text.h"
#include "ui/controls/fonts.h"
#include "ui/controls/wording.h"

namespace chimewerk {

namespace {

constexpr QMargins kSelectionMargins{10, 1, 2, 1};
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

struct RowColors {
    QColor name;
    QColor hint;
    QColor badge;
};

/// On the accent colour, everything is white.
RowColors rowColors(const ColorScheme& colors, bool onAccent) {
    if (onAccent) {
        return {Qt::white, QColor(255, 255, 255, 215), QColor(255, 255, 255, 200)};
    }
    return {colors.label, colors.secondaryLabel, colors.tertiaryLabel};
}

void paintSelection(QPainter& painter, const QStyleOptionViewItem& option, bool onAccent) {
    const QRectF rect(selectionRect(option.rect, option.direction));
    if ((option.state & QStyle::State_Selected) != 0) {
        const bool dark = colorSchemeOf(option.palette).isDark();
        painter.setPen(Qt::NoPen);
        painter.setBrush(onAccent ? option.palette.color(QPalette::Highlight)
                                  : (dark ? QColor(255, 255, 255, 36) : QColor(0, 0, 0, 26)));
        painter.drawRoundedRect(rect, kSelectionRadius, kSelectionRadius);
    }
    if (!showsFocusRing(option)) {
        return;
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(onAccent ? QColor(Qt::white) : colorSchemeOf(option.palette).blue, 2));
    painter.drawRoundedRect(rect.adjusted(3, 3, -3, -3), kSelectionRadius - 3,
                            kSelectionRadius - 3);
}

void paintLine(QPainter& painter, const QFont& font, const QColor& color, const QRect& rect,
               int alignment, const QString& text) {
    painter.setFont(font);
    painter.setPen(color);
    drawText(painter, rect, alignment | Qt::AlignVCenter | Qt::TextSingleLine,
             elided(font, text, rect.width()));
}

/// A long count takes room from the hint.
void paintHintAndBadge(QPainter& painter, const Placement& place, Qt::LayoutDirection direction,
                       const SidebarRow& row, const RowColors& colors) {
    const QFont badgeFont = monospacedDigitSystemFont(10);
    const QString badge = QString::fromStdString(row.badge);
    RowFrame hintFrame = place.layout.hint;
    RowFrame badgeFrame = place.layout.badge;
    const int more = std::max(0, textWidth(badgeFont, badge) - badgeFrame.width);
    badgeFrame.x -= more;
    badgeFrame.width += more;
    hintFrame.width -= more == 0 ? 0 : more + 4;
    painter.setLayoutDirection(direction);
    paintLine(painter, systemFont(11), colors.hint, place(hintFrame), Qt::AlignLeft,
              QString::fromStdString(row.hint));
    paintLine(painter, badgeFont, colors.badge, place(badgeFrame), Qt::AlignRight, badge);
}

void paintSwitch(QPainter& painter, const QStyleOptionViewItem& option, const Placement& place,
                 const SidebarRow& row, bool onAccent) {
    if (!row.isOn) {
        paintLine(painter, systemFont(13), Qt::black, place(place.layout.lock), Qt::AlignHCenter,
                  QString::fromUtf8(kLockEmoji));
        return;
    }
    QStyleOption box = option;
    box.rect = place(place.layout.checkBox);
    box.state = QStyle::State_Enabled | (*row.isOn ? QStyle::State_On : QStyle::State_Off);
    box.state.setFlag(QStyle::State_Selected, onAccent);
    paintCheckBox(painter, box);
}

}  // namespace

void paintSidebarRow(QPainter& painter, const QStyleOptionViewItem& option, const SidebarRow& row) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr auto kActive = QStyle::State_Selected | QStyle::State_Active;
    const bool onAccent = (option.state & kActive) == kActive;
    paintSelection(painter, option, onAccent);

    const Placement place(option.rect, option.direction);
    const RowColors colors = rowColors(colorSchemeOf(option.palette), onAccent);
    painter.setOpacity(row.alpha);
    paintLine(painter, systemFont(22), colors.name, place(place.layout.emoji), Qt::AlignLeft,
              QString::fromStdString(row.emoji));
    paintLine(painter, systemFont(13, QFont::Medium), colors.name, place(place.layout.name),
              Qt::AlignLeft, worded(row.name));
    paintHintAndBadge(painter, place, option.direction, row, colors);
    painter.setOpacity(1);
    paintSwitch(painter, option, place, row, onAccent);
    painter.restore();
}

QRect sidebarCheckBoxArea(const QRect& cell, Qt::LayoutDirection direction) {
    constexpr int kReach = 6;
    const Placement place(cell, direction);
    return place(place.layout.checkBox).marginsAdded({kReach, kReach, kReach, kReach});
}

}  // namespace chimewerk
