#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

namespace chimewerk {

/// Whether some of the text is to be shown as emoji. Text fonts have black-and-white glyphs for a few of
/// them, and would win.
bool holdsEmoji(const QString& text);

/// How wide the text is on one line, its emoji in colour; device-independent pixels.
int textWidth(const QFont& font, const QString& text);

/// The text, cut short with an ellipsis at its end where it is wider than this.
QString elided(const QFont& font, const QString& text, int width);

/// Draws as QPainter::drawText() does, with the painter's font and pen, and every emoji in colour. `flags` is
/// an alignment, which an RTL painter mirrors, with Qt::TextWordWrap and the two mnemonic flags.
void drawText(QPainter& painter, const QRect& rect, int flags, const QString& text);

}  // namespace chimewerk
