// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>

namespace chimewerk {

/// Returns the desktop's own font in this size, in device-independent pixels.
QFont systemFont(int size, QFont::Weight weight = QFont::Normal);
/// The same with digits of equal width, so that a changing number does not jump.
QFont monospacedDigitSystemFont(int size, QFont::Weight weight = QFont::Normal);

}  // namespace chimewerk
