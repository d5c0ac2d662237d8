// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPainter>
#include <QRect>
#include <QStyleOption>

#include "ui/rules/sidebar_row.h"

namespace chimewerk {

/// Paints one row of the dashboard's table into the option's rectangle.
void paintSidebarRow(QPainter& painter, const QStyleOptionViewItem& option, const SidebarRow& row);

/// Returns the area in which a click counts as a click on the check box of the row in `cell`:
/// slightly larger than the box.
QRect sidebarCheckBoxArea(const QRect& cell, Qt::LayoutDirection direction);

}  // namespace chimewerk
