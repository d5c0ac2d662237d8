// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QIcon>

namespace chimewerk {

/// Returns the program's tray icon: a speaker, drawn for each size and scale, visible on light and
/// dark panels.
QIcon makeStatusIcon();
/// Returns the icon for while the program is muted: the speaker has a cross.
QIcon makeMutedStatusIcon();

}  // namespace chimewerk
