// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

namespace chimewerk {

/// Asks the window manager of an X11 display for a dark or a light title bar. Window managers that
/// know no such request ignore it. Makes the window's handle if it has none.
void setDarkFrame(QWidget& window, bool isDark);

}  // namespace chimewerk
