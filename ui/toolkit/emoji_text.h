// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

namespace chimewerk {

/// Returns whether any part of the text is emoji.
bool holdsEmoji(const QString& text);

/// Returns the width of the text on one line, with colour emoji, in device-independent pixels.
int textWidth(const QFont& font, const QString& text);

/// Returns the text, cut with an ellipsis at its end if it is wider than `width`.
QString elided(const QFont& font, const QString& text, int width);

/// Draws like QPainter::drawText(), with the painter's font and pen, but with every emoji in
/// colour. `flags` is an alignment, which is mirrored for right-to-left layouts, with
/// Qt::TextWordWrap and the two mnemonic flags.
void drawText(QPainter& painter, const QRect& rect, int flags, const QString& text);

}  // namespace chimewerk
