// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPoint>
#include <QWidget>

#include "ui/controls/column.h"

namespace chimewerk {

/// A part of the detail panel that places its own widgets below one another. What reaches beyond
/// its contents lies in its contents' margins. Lengths are device-independent pixels.
class PanelBox : public QWidget {
public:
    using QWidget::QWidget;

    /// Lays the box out within this width, its contents beginning at `corner`; returns where
    /// they end.
    int arrange(QPoint corner, int width);

protected:
    /// Places all widgets of the box.
    virtual void fill(Column& column) = 0;

    /// Makes the widget a part of the box and returns it.
    template <typename Widget>
    Widget* add(Widget* widget) {
        widget->setParent(this);
        return widget;
    }
};

}  // namespace chimewerk
