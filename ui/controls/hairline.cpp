// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/hairline.h"

#include <QPainter>

#include "ui/toolkit/color_scheme.h"

namespace chimewerk {

Hairline::Hairline(QWidget* parent) : QWidget(parent) {
    setFixedHeight(1);
}

void Hairline::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), colorSchemeOf(*this).separator);
}

}  // namespace chimewerk
