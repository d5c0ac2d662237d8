// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QIcon>
#include <QPainter>
#include <QRectF>

namespace chimewerk {

/// Paints a picture into this square.
using PaintPicture = void (*)(QPainter& painter, const QRectF& square);

/// Returns an icon that is painted anew for each size and scale, so that it is always sharp.
QIcon paintedIcon(PaintPicture paint);

/// Returns the program's icon: the one that desktops show for its entry.
QIcon programIcon();

}  // namespace chimewerk
