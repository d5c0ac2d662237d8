// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPainter>
#include <QRect>
#include <QStyleOption>

#include "ui/rules/sidebar_row.h"

namespace chimewerk {

/// The colours of a row: what is behind it, opaque, and its texts.
struct SidebarRowColors {
    QColor ground;
    QColor name;
    QColor hint;
    QColor badge;
};

/// Returns the colours of a row that is selected, active or under the pointer as `state` says.
/// `alpha` is the opacity of its texts, 0 to 1, which stay legible. The palette's window colour is
/// that of the sidebar.
SidebarRowColors sidebarRowColors(const QPalette& palette, QStyle::State state, double alpha);

/// Paints one row of the dashboard's table into the option's rectangle.
void paintSidebarRow(QPainter& painter, const QStyleOptionViewItem& option, const SidebarRow& row);

/// Returns the area in which a click counts as a click on the check box of the row in `cell`:
/// slightly larger than the box.
QRect sidebarCheckBoxArea(const QRect& cell, Qt::LayoutDirection direction);

}  // namespace chimewerk
