#include "ui/controls/emoji_text.h"

#include <QFontMetrics>
#include <QList>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace chimewerk {

namespace {

constexpr char32_t kEmojiSelector = 0xFE0F;
constexpr char32_t kTextSelector = 0xFE0E;
constexpr char32_t kJoiner = 0x200D;
constexpr char32_t kKeycap = 0x20E3;

struct Range {
    char32_t first;
    char32_t last;
};

/// The characters that are emoji unless something says otherwise.
constexpr std::array kEmoji = {
    Range{0x231A, 0x231B},   Range{0x23E9, 0x23EC},   Range{0x23F0, 0x23F0},
    Range{0x23F3, 0x23F3},   Range{0x25FD, 0x25FE},   Range{0x2614, 0x2615},
    Range{0x2648, 0x2653},   Range{0x267F, 0x267F},   Range{0x2693, 0x2693},
    Range{0x26A1, 0x26A1},   Range{0x26AA, 0x26AB},   Range{0x26BD, 0x26BE},
    Range{0x26C4, 0x26C5},   Range{0x26CE, 0x26CE},   Range{0x26D4, 0x26D4},
    Range{0x26EA, 0x26EA},   Range{0x26F2, 0x26F3},   Range{0x26F5, 0x26F5},
    Range{0x26FA, 0x26FA},   Range{0x26FD, 0x26FD},   Range{0x2705, 0x2705},
    Range{0x270A, 0x270B},   Range{0x2728, 0x2728},   Range{0x274C, 0x274C},
    Range{0x274E, 0x274E},   Range{0x2753, 0x2755},   Range{0x2757, 0x2757},
    Range{0x2795, 0x2797},   Range{0x27B0, 0x27B0},   Range{0x27BF, 0x27BF},
    Range{0x2B1B, 0x2B1C},   Range{0x2B50, 0x2B50},   Range{0x2B55, 0x2B55},
    Range{0x1F004, 0x1F004}, Range{0x1F0CF, 0x1F0CF}, Range{0x1F18E, 0x1F18E},
    Range{0x1F191, 0x1F19A}, Range{0x1F1E6, 0x1F1FF}, Range{0x1F201, 0x1F201},
    Range{0x1F300, 0x1FAFF}};

bool isEmoji(char32_t character) {
    return std::any_of(kEmoji.begin(), kEmoji.end(), [character](const Range& range) {
        return range.first <= character && character <= range.last;
    });
}

/// One character of a text and where it stands in it, in UTF-16 units.
struct Character {
    char32_t code;
    int start;
    int length;
};

QList<Character> charactersOf(const QString& text) {
    QList<Character> characters;
    for (int at = 0; at < text.size();) {
        const bool pair =
            text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        const char32_t code =
            pair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
        characters.append({code, at, pair ? 2 : 1});
        at += pair ? 2 : 1;
    }
    return characters;
}

/// Where the text is emoji: start and length, adjoining ones joined.
QList<std::pair<int, int>> emojiRuns(const QString& text) {
    QList<std::pair<int, int>> runs;
    const QList<Character> characters = charactersOf(text);
    for (int i = 0; i < characters.size(); ++i) {
        const Character& character = characters[i];
        const char32_t next = i + 1 < characters.size() ? characters[i + 1].code : 0;
        const bool continues =
            !runs.isEmpty() && runs.last().first + runs.last().second == character.start;
        const bool trailing = character.code == kEmojiSelector || character.code == kJoiner ||
                              character.code == kKeycap;
        const bool emoji =
            next == kEmojiSelector || (isEmoji(character.code) && next != kTextSelector);
        if (continues && (trailing || emoji)) {
            runs.last().second += character.length;
        } else if (emoji) {
            runs.append({character.start, character.length});
        }
    }
    return runs;
}

QFont emojiFont(const QFont& font) {
    QFont emoji = font;
    emoji.setFamilies({QStringLiteral("Noto Color Emoji"), QStringLiteral("emoji")});
    emoji.setWeight(QFont::Normal);
    return emoji;
}

void dress(QTextLayout& layout, const QFont& font, const QString& text) {
    QList<QTextLayout::FormatRange> formats;
    QTextCharFormat format;
    format.setFont(emojiFont(font));
    for (const auto& [start, length] : emojiRuns(text)) {
        formats.append({start, length, format});
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

/// Breaks the text into lines and puts each below the one before; returns their height.
qreal layLines(QTextLayout& layout, qreal width, Qt::Alignment alignment, qreal lineHeight) {
    qreal y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const qreal spare = width - line.naturalTextWidth();
        const qreal x = (alignment & Qt::AlignRight) != 0     ? spare
                        : (alignment & Qt::AlignHCenter) != 0 ? spare / 2
                                                              : 0;
        line.setPosition({x, y});
        y += std::max(lineHeight, std::floor(line.height()));
    }
    layout.endLayout();
    return y;
}

}  // namespace

bool holdsEmoji(const QString& text) {
    return !emojiRuns(text).isEmpty();
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
    // The metrics know nothing of the wider emoji: what they think fits may have to be cut a little more.
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
    // Alignment is ours, so that it takes the text for what is drawn.
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
