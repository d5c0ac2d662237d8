// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>
#include <QUrl>
#include <cmath>

#include "support/foreign_words.h"
#include "support/widget_input.h"
#include "ui/controls/fonts.h"
#include "ui/help_window_controller.h"
#include "ui/rules/help_content.h"
#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {
namespace {

class TheHelpWindow : public testing::Test {
protected:
    void show() {
        controller_.showWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
    }

    QTextEdit& text() { return *window_.findChild<QTextEdit*>(); }

    /// Returns the paragraph with this text, laid out.
    QTextBlock blockWith(const QString& part) {
        // A document lays out invisible paragraphs later; its size needs all of them.
        text().document()->size();
        QTextBlock block = text().document()->begin();
        while (block.isValid() && !block.text().contains(part)) {
            block = block.next();
        }
        return block;
    }

    /// Returns where the line's share of the height begins, in pixels. The line itself is as high
    /// as its fonts; its baseline is at four fifths of the share.
    static double topOf(const QTextBlock& block, int line) {
        const QTextLine it = block.layout()->lineAt(line);
        return block.layout()->position().y() + it.y() + it.ascent() -
               0.8 * block.blockFormat().lineHeight();
    }

    /// Returns the distance between the last line of the paragraph above and the first of this one,
    /// in pixels.
    double spacingAbove(const QString& part) {
        const QTextBlock below = blockWith(part);
        const QTextBlock above = below.previous();
        const double bottom =
            topOf(above, above.layout()->lineCount() - 1) + above.blockFormat().lineHeight();
        return topOf(below, 0) - bottom;
    }

    Menu menu_;
    NotificationCenter notifications_;
    HelpWindowController controller_{"/some where/users.md", menu_, notifications_};
    QWidget& window_ = controller_.window();
};

TEST_F(TheHelpWindow, IsAsLargeAsItShouldBe) {
    EXPECT_EQ(window_.windowTitle(), "Chimewerk — Help & Guide");
    EXPECT_EQ(window_.size(), QSize(700, 640));
    window_.resize(10, 10);
    EXPECT_EQ(window_.size(), QSize(520, 400));
}

TEST_F(TheHelpWindow, PlacesTheLabelsOfItsHeader) {
    show();
    struct Row {
        int fontSize;
        int spacingAbove;
        double alpha;
    };
    int bottom = 0;
    auto labels = window_.findChildren<QLabel*>();
    for (const Row& row : {Row{30, 18, 1}, Row{15, 5, 0.88}, Row{11, 6, 0.65}}) {
        const QLabel& label = *labels.takeFirst();
        SCOPED_TRACE(label.text().toStdString());
        EXPECT_EQ(label.font().pixelSize(), row.fontSize);
        EXPECT_EQ(label.geometry().topLeft(), QPoint(28, bottom + row.spacingAbove));
        EXPECT_NEAR(label.palette().color(QPalette::WindowText).alphaF(), row.alpha, 0.01);
        bottom = label.geometry().bottom() + 1;
    }
    EXPECT_LE(bottom, 110);
    EXPECT_EQ(text().geometry(), QRect(0, 110, 700, 530));
}

TEST_F(TheHelpWindow, SpreadsTheGradientOverItsWholeWidth) {
    show();
    for (const int width : {700, 520, 1000}) {
        SCOPED_TRACE(width);
        window_.resize(width, 500);
        ASSERT_TRUE(becomesTrue([this, width] { return text().width() == width; }));
        const QImage image = window_.grab().toImage();
        const auto isNear = [&image](int x, int y, const QColor& expected) {
            const QColor color = image.pixelColor(x, y);
            return std::abs(color.red() - expected.red()) <= 2 &&
                   std::abs(color.green() - expected.green()) <= 2 &&
                   std::abs(color.blue() - expected.blue()) <= 2;
        };
        for (const int y : {0, 109}) {
            EXPECT_TRUE(isNear(0, y, QColor(56, 20, 153)));
            EXPECT_TRUE(isNear(width - 1, y, QColor(115, 38, 204)));
            EXPECT_TRUE(isNear(width / 2, y, QColor(85, 29, 179)));
        }
        EXPECT_FALSE(isNear(0, 110, QColor(56, 20, 153)));
        EXPECT_FALSE(text().horizontalScrollBar()->isVisible());
        EXPECT_EQ(text().horizontalScrollBar()->maximum(), 0);
    }
}

TEST_F(TheHelpWindow, ShowsTheWholeGuideAsItIsHere) {
    QString expected;
    for (const HelpParagraph& paragraph : helpContent()) {
        const QString shown = worded(paragraph.text);
        if (!shown.isEmpty() || paragraph.text.empty()) {
            expected += shown + '\n';
        }
    }
    EXPECT_EQ(text().toPlainText() + '\n', expected.remove('[').remove(']'));
    for (const QLabel* const label : window_.findChildren<QLabel*>()) {
        EXPECT_EQ(foreignWordIn(label->text().toStdString()), "");
    }
}

TEST_F(TheHelpWindow, EndsWithALinkToTheManual) {
    show();
    QUrl opened;
    QObject::connect(window_.findChild<QTextBrowser*>(), &QTextBrowser::anchorClicked,
                     [&opened](const QUrl& link) { opened = link; });
    press(Qt::Key_Tab);
    EXPECT_EQ(text().textCursor().selectedText(), "Using Chimewerk");
    press(Qt::Key_Return);
    EXPECT_EQ(opened.toLocalFile(), "/some where/users.md");
}

TEST_F(TheHelpWindow, UsesTheEmojiFontForEmojiOnly) {
    QTextBlock::iterator parts = blockWith("Know what you allow").begin();
    EXPECT_EQ(parts.fragment().text(), "⚠️");
    EXPECT_EQ(parts.fragment().charFormat().font().families().value(0), "Noto Color Emoji");
    ++parts;
    EXPECT_EQ(parts.fragment().charFormat().font().families(), systemFont(13).families());
}

TEST_F(TheHelpWindow, AddsUpTheSpacingsOfNeighbours) {
    show();
    struct Row {
        QString text;
        double spacing;
    };
    for (const Row& row :
         {Row{"No window in", 5}, Row{"─", 5 + 10}, Row{"Sound Events", 10 + 22},
          Row{"Single Knock", 8}, Row{"Lid Open", 3}, Row{"Keyboard sounds not working", 8 + 14},
          Row{"Choose one", 3}, Row{"Know what", 3 + 4}, Row{"Trash sounds not working", 6 + 14},
          Row{"All other 17", 5 + 6}}) {
        EXPECT_NEAR(spacingAbove(row.text), row.spacing, 0.05) << row.text.toStdString();
    }
    EXPECT_EQ(text().document()->begin().layout()->position().y(), 28);
}

TEST_F(TheHelpWindow, KeepsTheLinesOfAParagraphEvenlyApart) {
    show();
    window_.resize(520, 400);
    ASSERT_TRUE(becomesTrue([this] { return text().width() == 520; }));
    const QTextLayout& wrapped = *blockWith("Try a firm, clear knock").layout();
    ASSERT_GE(wrapped.lineCount(), 2);
    EXPECT_EQ(wrapped.lineAt(0).x(), wrapped.lineAt(1).x());
    EXPECT_EQ(wrapped.lineAt(0).x(), 28);

    // One of these lines has an emoji, the others have none.
    const QTextLayout& lines = *blockWith("this event is automatically locked").layout();
    ASSERT_GE(lines.lineCount(), 3);
    for (int i = 1; i < lines.lineCount(); ++i) {
        EXPECT_NEAR(lines.lineAt(i).y() + lines.lineAt(i).ascent() - lines.lineAt(i - 1).y() -
                        lines.lineAt(i - 1).ascent(),
                    std::ceil(QFontMetricsF(systemFont(13)).height()) + 2, 0.02);
    }
}

TEST_F(TheHelpWindow, CanBeReadByKeyboardAndNotEdited) {
    show();
    const QString before = text().toPlainText();
    QScrollBar& bar = *text().verticalScrollBar();
    EXPECT_EQ(bar.value(), 0);
    press(Qt::Key_Down);
    const int line = bar.value();
    EXPECT_GT(line, 0);
    press(Qt::Key_PageDown);
    EXPECT_GT(bar.value(), 2 * line);
    press(Qt::Key_End);
    EXPECT_EQ(bar.value(), bar.maximum());
    press(Qt::Key_Home);
    EXPECT_EQ(bar.value(), 0);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(text().textCursor().selectedText().size(), before.size());
    press(Qt::Key_Delete);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(text().toPlainText(), before);
}

TEST_F(TheHelpWindow, KeepsItsPlaceWhenClosedAndShownAgain) {
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Escape, Qt::NoModifier}, std::pair{Qt::Key_W, Qt::ControlModifier}}) {
        show();
        text().verticalScrollBar()->setValue(700);
        press(key, modifiers);
        EXPECT_FALSE(window_.isVisible());
        show();
        EXPECT_TRUE(window_.isVisible());
        EXPECT_EQ(text().verticalScrollBar()->value(), 700);
    }
    window_.showMinimized();
    ASSERT_TRUE(becomesTrue([this] { return window_.isMinimized(); }));
    show();
    EXPECT_FALSE(window_.isMinimized());
}

TEST_F(TheHelpWindow, FollowsTheDesktopsDarkMode) {
    const QPalette before = QApplication::palette();
    show();
    text().verticalScrollBar()->setValue(300);
    for (const ColorScheme* const colors : {&ColorScheme::dark(), &ColorScheme::light()}) {
        QApplication::setPalette(paletteOf(*colors));
        QApplication::processEvents();
        const auto colorOf = [this](const QString& part) {
            return blockWith(part).begin().fragment().charFormat().foreground().color();
        };
        EXPECT_EQ(colorOf("No window in"), colors->label);
        EXPECT_EQ(colorOf("Troubleshooting"), colors->orange);
        EXPECT_EQ(colorOf("Single Knock"), colors->secondaryLabel);
        EXPECT_EQ(colorOf("Sound Themes"), colors->accentText);
        EXPECT_EQ(colorOf("All settings"), colors->green);
        EXPECT_EQ(window_.grab().toImage().pixelColor(10, 300), colors->windowBackground);
        EXPECT_EQ(text().verticalScrollBar()->value(), 300);
    }
    QApplication::setPalette(before);
    EXPECT_EQ(ColorScheme::light().accentText, QColor::fromRgbF(0.40F, 0.15F, 0.80F));
    EXPECT_EQ(ColorScheme::light().green, QColor::fromRgbF(0.15F, 0.65F, 0.35F));
}

}  // namespace
}  // namespace chimewerk
