// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/column.h"

#include <QStyle>
#include <algorithm>

namespace chimewerk {

namespace {

int heightOf(const QWidget& widget, int width) {
    const int wanted =
        widget.hasHeightForWidth() ? widget.heightForWidth(width) : widget.sizeHint().height();
    return std::clamp(wanted, widget.minimumHeight(), widget.maximumHeight());
}

int widthOf(const Column::Cell& cell) {
    return cell.width > 0 ? cell.width : cell.widget.sizeHint().width();
}

}  // namespace

void Column::add(QWidget& widget) {
    const int height = heightOf(widget, width());
    place(widget, {margins_.left(), bottom_, width(), height});
    bottom_ += height;
}

void Column::addRow(std::initializer_list<Cell> cells) {
    int highest = 0;
    for (const Cell& cell : cells) {
        highest = std::max(highest, heightOf(cell.widget, widthOf(cell)));
    }
    int start = margins_.left();
    for (const Cell& cell : cells) {
        const int height = heightOf(cell.widget, widthOf(cell));
        start += cell.gap;
        place(cell.widget, {start, bottom_ + (highest - height) / 2, widthOf(cell), height});
        start += widthOf(cell);
    }
    bottom_ += highest;
}

void Column::place(QWidget& widget, const QRect& where) const {
    widget.setGeometry(QStyle::visualRect(direction_, QRect(0, 0, parentWidth_, 0), where));
}

}  // namespace chimewerk
