#pragma once

#include <QPainter>
#include <QRect>
#include <QStyleOption>

#include "ui/rules/sidebar_row.h"

namespace chimewerk {

/// Paints one row of the dashboard's table into the option's rectangle.
void paintSidebarRow(QPainter& painter, const QStyleOptionViewItem& option, const SidebarRow& row);

/// Where a click means the check box of the row that lies in `cell`: somewhat more than the box.
QRect sidebarCheckBoxArea(const QRect& cell, Qt::LayoutDirection direction);

}  // namespace chimewerk
