// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMargins>
#include <QWidget>
#include <initializer_list>

namespace chimewerk {

/// Places widgets below one another in their parent, each as high as it needs to be, and mirrors
/// them where the language reads from right to left. Lengths are device-independent pixels.
class Column {
public:
    /// One of several widgets side by side.
    struct Cell {
        QWidget& widget;
        /// Between it and the one before it.
        int gap = 0;
        /// 0 for the widget's preferred width.
        int width = 0;
    };

    /// `parentWidth` includes the margins.
    Column(Qt::LayoutDirection direction, int parentWidth, const QMargins& margins)
        : direction_(direction),
          parentWidth_(parentWidth),
          margins_(margins),
          bottom_(margins.top()) {}

    void skip(int gap) { bottom_ += gap; }
    /// `bottom` is where something ends that places itself.
    void skipTo(int bottom) { bottom_ = bottom; }
    /// As wide as the column.
    void add(QWidget& widget);
    /// Side by side from the start of the line, vertically centred on the highest.
    void addRow(std::initializer_list<Cell> cells);
    /// At this place, which is mirrored too. Does not move what follows.
    void place(QWidget& widget, const QRect& where) const;

    /// Between the margins.
    int width() const { return parentWidth_ - margins_.left() - margins_.right(); }
    /// Where the next widget begins.
    int bottom() const { return bottom_; }

private:
    const Qt::LayoutDirection direction_;
    const int parentWidth_;
    const QMargins margins_;
    int bottom_;
};

}  // namespace chimewerk
