// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPoint>
#include <QWidget>

#include "ui/controls/column.h"

namespace chimewerk {

/// A part of the detail panel that places its own widgets below one another. Anything outside its
/// contents is in its contents' margins. Lengths are device-independent pixels.
class PanelBox : public QWidget {
public:
    using QWidget::QWidget;

    /// Lays the box out within this width, with its contents starting at `corner`, and returns
    /// where they end.
    int arrange(QPoint corner, int width);

protected:
    /// Places all widgets of the box.
    virtual void fill(Column& column) = 0;

    /// Adds the widget to the box and returns it.
    template <typename Widget>
    Widget* add(Widget* widget) {
        widget->setParent(this);
        return widget;
    }
};

}  // namespace chimewerk
