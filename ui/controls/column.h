// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMargins>
#include <QWidget>
#include <initializer_list>

namespace chimewerk {

/// Places widgets below one another in their parent, each as high as it needs, mirrored for
/// right-to-left languages. Lengths are device-independent pixels.
class Column {
public:
    /// One of several widgets in a row.
    struct Cell {
        QWidget& widget;
        /// The distance from the widget before it.
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
    /// Skips to `bottom`, for a widget that was placed elsewhere.
    void skipTo(int bottom) { bottom_ = bottom; }
    /// Adds a widget as wide as the column.
    void add(QWidget& widget);
    /// Adds widgets in a row from the start of the line, vertically centred on the highest.
    void addRow(std::initializer_list<Cell> cells);
    /// Places a widget here, mirrored if necessary. Does not move the widgets that follow.
    void place(QWidget& widget, const QRect& where) const;

    /// The width between the margins.
    int width() const { return parentWidth_ - margins_.left() - margins_.right(); }
    /// The place of the next widget.
    int bottom() const { return bottom_; }

private:
    const Qt::LayoutDirection direction_;
    const int parentWidth_;
    const QMargins margins_;
    int bottom_;
};

}  // namespace chimewerk
