// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/help_window_controller.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEvent>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeySequence>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/controls/fonts.h"
#include "ui/rules/contrast.h"
#include "ui/rules/help_content.h"
#include "ui/texts/emoji_runs.h"
#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/wording.h"
#include "ui/tray/program_menu.h"

namespace chimewerk {

namespace {

constexpr int kHeaderHeight = 110;
constexpr int kMargin = 28;

/// The guide as it is here, without the paragraphs that have nothing to say.
std::vector<HelpParagraph> shownGuide() {
    std::vector<HelpParagraph> guide;
    for (HelpParagraph& paragraph : helpContent()) {
        std::string shown = platformWording(paragraph.text);
        if (!shown.empty() || paragraph.text.empty()) {
            paragraph.text = std::move(shown);
            guide.push_back(std::move(paragraph));
        }
    }
    return guide;
}

QColor helpColor(const ColorScheme& colors, HelpColor color) {
    switch (color) {
        case HelpColor::label:
            return colors.label;
        case HelpColor::secondaryLabel:
            return colors.secondaryLabel;
        case HelpColor::separator:
            return colors.separator;
        case HelpColor::accent:
            return colors.accentText;
        case HelpColor::tipGreen:
            return colors.green;
        case HelpColor::orange:
            return colors.orange;
    }
    return colors.label;
}

QFont helpFont(const HelpStyle& style) {
    return systemFont(style.fontSize, style.bold ? QFont::Bold : QFont::Normal);
}

QTextCharFormat inEmojiFont(QTextCharFormat format) {
    QFont font = format.font();
    font.setFamilies(QStringList{QStringLiteral("Noto Color Emoji")} + font.families());
    // The font has no bold style.
    font.setWeight(QFont::Normal);
    // Bitmap emoji are scaled by their height, which is larger than their font size.
    font.setPixelSize(qRound(font.pixelSize() * 1.17));
    format.setFont(font);
    return format;
}

/// `spacingAbove` is the spacing below the previous paragraph. A document uses the larger margin
/// between two paragraphs; here they are added.
QTextBlockFormat blockFormat(const HelpStyle& style, int spacingAbove) {
    QTextBlockFormat format;
    format.setTopMargin(spacingAbove + style.spacingBefore);
    format.setLeftMargin(style.indent);
    // A fixed height, because emoji would make their lines higher than the others.
    const qreal height = std::ceil(QFontMetricsF(helpFont(style)).height()) + kHelpLineSpacing;
    format.setLineHeight(height, QTextBlockFormat::FixedHeight);
    return format;
}

void insertText(QTextCursor& cursor, const QString& text, const QTextCharFormat& format) {
    const std::u16string units = text.toStdU16String();
    for (const EmojiRun& run : emojiRuns(units)) {
        cursor.insertText(QStringView(run.text).toString(),
                          run.isEmoji ? inEmojiFont(format) : format);
    }
}

/// Inserts a paragraph's text. What it has in brackets becomes a link to the manual.
void insertParagraph(QTextCursor& cursor, const QString& text, const QTextCharFormat& format,
                     const QUrl& manual) {
    const auto begin = text.indexOf(QLatin1Char('['));
    const auto end = text.indexOf(QLatin1Char(']'), begin);
    if (begin < 0 || end < 0) {
        return insertText(cursor, text, format);
    }
    QTextCharFormat link = format;
    link.setAnchor(true);
    link.setAnchorHref(manual.toString());
    link.setFontUnderline(true);
    insertText(cursor, text.left(begin), format);
    insertText(cursor, text.mid(begin + 1, end - begin - 1), link);
    insertText(cursor, text.mid(end + 1), format);
}

/// Selects the block's link, if it has one, and else nothing.
void selectLink(QTextCursor& cursor, const QTextBlock& block) {
    cursor.setPosition(block.position());
    for (auto part = block.begin(); !part.atEnd(); ++part) {
        const QTextFragment fragment = part.fragment();
        if (fragment.charFormat().isAnchor()) {
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            return;
        }
    }
}

class HeaderView final : public QWidget {
public:
    HeaderView() { setFixedHeight(kHeaderHeight); }

protected:
    void paintEvent(QPaintEvent*) override {
        QLinearGradient gradient(0, 0, width(), 0);
        gradient.setColorAt(0, QColor::fromRgbF(0.22F, 0.08F, 0.60F));
        gradient.setColorAt(1, QColor::fromRgbF(0.45F, 0.15F, 0.80F));
        QPainter(this).fillRect(rect(), gradient);
    }
};

/// Shows the guide in the colours of the desktop's appearance. Its document has one block per
/// paragraph of the content.
class GuideView final : public QTextBrowser {
public:
    GuideView() : colors_(&colorSchemeOf(*this)) {
        setReadOnly(true);
        setUndoRedoEnabled(false);
        // Not by keyboard: the arrow keys would move an invisible cursor instead of scrolling.
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse |
                                Qt::LinksAccessibleByKeyboard);
        setOpenLinks(false);
        connect(this, &QTextBrowser::anchorClicked, this, &QDesktopServices::openUrl);
        setFrameShape(QFrame::NoFrame);
        viewport()->setBackgroundRole(QPalette::Window);
        // Also below the scroll bar, where the window's own colour would be seen.
        setBackgroundRole(QPalette::Window);
        setAutoFillBackground(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        document()->setDocumentMargin(kMargin);
        setAccessibleName(worded("Guide"));
    }

    /// Is light or dark from now on as the window is, which has the desktop's own colours.
    void follow(QWidget& window) {
        wearColorsOf(window);
        window.installEventFilter(this);
    }

    /// Colours the text in place, which keeps the selection and the scroll position.
    void colorText() {
        QTextCursor cursor(document());
        cursor.beginEditBlock();
        QTextBlock block = document()->begin();
        for (const HelpParagraph& paragraph : shownGuide()) {
            cursor.setPosition(block.position());
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            color(cursor, paragraph.color);
            selectLink(cursor, block);
            color(cursor, HelpColor::accent);
            block = block.next();
        }
        cursor.endEditBlock();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == window() && event->type() == QEvent::PaletteChange) {
            wearColorsOf(*window());
        }
        return QTextBrowser::eventFilter(watched, event);
    }
    void changeEvent(QEvent* event) override {
        QTextBrowser::changeEvent(event);
        if (event->type() == QEvent::PaletteChange && colors_ != &colorSchemeOf(*this)) {
            colors_ = &colorSchemeOf(*this);
            colorText();
        }
    }

private:
    void wearColorsOf(const QWidget& window) { setPalette(paletteOf(colorSchemeOf(window))); }

    void color(QTextCursor& cursor, HelpColor role) {
        QTextCharFormat format;
        format.setForeground(helpColor(*colors_, role));
        cursor.mergeCharFormat(format);
    }

    /// The scheme of the text's current colours.
    const ColorScheme* colors_;
};

QVBoxLayout* stack(QWidget* parent) {
    auto* const layout = new QVBoxLayout(parent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}

void closeOn(QWidget* window, const QKeySequence& keys) {
    QObject::connect(new QShortcut(keys, window), &QShortcut::activated, window, &QWidget::close);
}

}  // namespace

HelpWindowController::HelpWindowController(const std::string& manual, const Menu& menu,
                                           NotificationCenter& notifications)
    : window_(std::make_unique<QWidget>()) {
    window_->setWindowTitle(worded(kHelpTitle));
    window_->setMinimumSize(520, 400);
    window_->resize(700, 640);
    // There is no screen if none is plugged in.
    if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
        window_->move(screen->availableGeometry().center() - window_->rect().center());
    }
    closeOn(window_.get(), Qt::Key_Escape);
    closeOn(window_.get(), Qt::CTRL | Qt::Key_W);
    addMenuShortcuts(*window_, menu);
    buildUI(QUrl::fromLocalFile(QString::fromStdString(manual)));
    contrast_ = notifications.observe(kContrastDidChange, [this](const Notification& /*changed*/) {
        // The guide then takes its colours anew.
        QEvent palette(QEvent::PaletteChange);
        QApplication::sendEvent(window_.get(), &palette);
    });
}

void HelpWindowController::showWindow() {
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void HelpWindowController::buildUI(const QUrl& manual) {
    auto* const header = new HeaderView;
    QVBoxLayout* const labels = stack(header);
    labels->setContentsMargins(kMargin, 18, 0, 0);
    labels->addWidget(heroLabel(worded(kHelpName), 30, QFont::Bold));
    labels->addSpacing(5);
    labels->addWidget(heroLabel(worded(kHelpMotto), 15, QFont::Normal, 0.88));
    labels->addSpacing(6);
    labels->addWidget(heroLabel(worded(kHelpVersionLine), 11, QFont::Normal, 0.65));
    labels->addStretch();

    auto* const guide = new GuideView;
    QVBoxLayout* const rows = stack(window_.get());
    rows->addWidget(header);
    rows->addWidget(guide);
    guide->follow(*window_);
    guide->setFocus();
    buildContent(*guide->document(), manual);
    guide->colorText();
    // After insertion, the cursor and the view are at the end.
    guide->moveCursor(QTextCursor::Start);
}

QLabel* HelpWindowController::heroLabel(const QString& text, int size, QFont::Weight weight,
                                        double alpha) {
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setFont(systemFont(size, weight));
    // Fonts with tall lines would bring the last label to the edge of the header.
    label->setFixedHeight(std::min(label->sizeHint().height(), (size * 5 + 3) / 4));
    QPalette palette;
    palette.setColor(QPalette::WindowText, QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha)));
    label->setPalette(palette);
    return label;
}

void HelpWindowController::buildContent(QTextDocument& document, const QUrl& manual) {
    QTextCursor cursor(&document);
    // One edit block, so that the text is laid out once.
    cursor.beginEditBlock();
    bool isFirst = true;
    int spacingAbove = 0;
    for (const HelpParagraph& paragraph : shownGuide()) {
        const HelpStyle& style = helpStyle(paragraph.kind);
        QTextCharFormat format;
        format.setFont(helpFont(style));
        if (isFirst) {
            // Only the document's margin is above it.
            cursor.setBlockFormat(blockFormat(style, -style.spacingBefore));
            cursor.setBlockCharFormat(format);
        } else {
            cursor.insertBlock(blockFormat(style, spacingAbove), format);
        }
        insertParagraph(cursor, QString::fromStdString(paragraph.text), format, manual);
        isFirst = false;
        spacingAbove = style.spacingAfter;
    }
    cursor.endEditBlock();
}

}  // namespace chimewerk
