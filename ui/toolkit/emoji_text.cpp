// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/emoji_text.h"

#include <QFontMetrics>
#include <QList>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/texts/emoji_runs.h"

namespace chimewerk {

namespace {

std::vector<EmojiRun> runsOf(const QString& text) {
    return emojiRuns({QStringView(text).utf16(), static_cast<std::size_t>(text.size())});
}

QFont emojiFont(const QFont& font) {
    QFont emoji = font;
    emoji.setFamilies({QStringLiteral("Noto Color Emoji"), QStringLiteral("emoji")});
    emoji.setWeight(QFont::Normal);
    return emoji;
}

/// Sets the emoji font for the emoji in the layout's text.
void dress(QTextLayout& layout, const QFont& font, const QString& text) {
    QList<QTextLayout::FormatRange> formats;
    QTextCharFormat format;
    format.setFont(emojiFont(font));
    int start = 0;
    for (const EmojiRun& run : runsOf(text)) {
        const int length = static_cast<int>(run.text.size());
        if (run.isEmoji) {
            formats.append({start, length, format});
        }
        start += length;
    }
    layout.setFormats(formats);
}

QString withoutMnemonics(const QString& text) {
    QString plain;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&') && i + 1 < text.size()) {
            ++i;
        }
        plain += text[i];
    }
    return plain;
}

/// Breaks the text into lines below one another and returns their height.
qreal layLines(QTextLayout& layout, qreal width, Qt::Alignment alignment, qreal lineHeight) {
    qreal y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const qreal spare = width - line.naturalTextWidth();
        const qreal x = (alignment & Qt::AlignRight) != 0     ? spare
                        : (alignment & Qt::AlignHCenter) != 0 ? spare / 2
                                                              : 0;
        // A line of nothing but emoji is lower than a line of text.
        const qreal height = std::max(lineHeight, std::floor(line.height()));
        line.setPosition({x, y + std::floor((height - line.height()) / 2)});
        y += height;
    }
    layout.endLayout();
    return y;
}

}  // namespace

bool holdsEmoji(const QString& text) {
    return std::ranges::any_of(runsOf(text), &EmojiRun::isEmoji);
}

int textWidth(const QFont& font, const QString& text) {
    QTextLayout layout(text, font);
    dress(layout, font, text);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(1e6);
    layout.endLayout();
    return line.isValid() ? static_cast<int>(std::ceil(line.naturalTextWidth())) : 0;
}

QString elided(const QFont& font, const QString& text, int width) {
    if (textWidth(font, text) <= width) {
        return text;
    }
    // The metrics do not include the wider colour emoji, so the result may have to be cut further.
    const QFontMetrics metrics(font);
    QString shorter = metrics.elidedText(text, Qt::ElideRight, width);
    for (int less = width; textWidth(font, shorter) > width && less > 0; --less) {
        shorter = metrics.elidedText(text, Qt::ElideRight, less);
    }
    return shorter;
}

void drawText(QPainter& painter, const QRect& rect, int flags, const QString& text) {
    if (!holdsEmoji(text)) {
        painter.drawText(rect, flags, text);
        return;
    }
    QString shown = (flags & (Qt::TextShowMnemonic | Qt::TextHideMnemonic)) != 0
                        ? withoutMnemonics(text)
                        : text;
    shown.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    QTextLayout layout(shown, painter.font());
    dress(layout, painter.font(), shown);
    QTextOption option;
    option.setTextDirection(painter.layoutDirection());
    option.setWrapMode((flags & Qt::TextWordWrap) != 0 ? QTextOption::WordWrap
                                                       : QTextOption::ManualWrap);
    // layLines() aligns the lines by their drawn width.
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    layout.setTextOption(option);
    const Qt::Alignment alignment = QStyle::visualAlignment(
        painter.layoutDirection(),
        Qt::Alignment(flags) & (Qt::AlignHorizontal_Mask | Qt::AlignVertical_Mask));
    const QFontMetricsF metrics(painter.font());
    const qreal height = layLines(layout, rect.width(), alignment, metrics.lineSpacing());
    const qreal top = (alignment & Qt::AlignBottom) != 0    ? rect.height() - height
                      : (alignment & Qt::AlignVCenter) != 0 ? (rect.height() - height) / 2
                                                            : 0;
    layout.draw(&painter, QPointF(rect.left(), rect.top() + top));
}

}  // namespace chimewerk
