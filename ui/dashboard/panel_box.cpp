// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/panel_box.h"

namespace chimewerk {

int PanelBox::arrange(QPoint corner, int width) {
    const QMargins beyond = contentsMargins();
    const int wholeWidth = beyond.left() + width + beyond.right();
    Column column(layoutDirection(), wholeWidth, beyond);
    fill(column);
    const QPoint start = corner - QPoint(beyond.left(), beyond.top());
    setGeometry(QRect(start, QSize(wholeWidth, column.bottom())));
    return start.y() + column.bottom();
}

}  // namespace chimewerk
