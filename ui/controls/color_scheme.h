#pragma once

#include <QColor>
#include <QFont>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QString>
#include <QWidget>

namespace chimewerk {

/// The colours of one appearance, by their role.
struct ColorScheme {
    QColor windowBackground;
    /// Behind lists and text.
    QColor controlBackground;
    QColor label;
    QColor secondaryLabel;
    QColor tertiaryLabel;
    QColor quaternaryLabel;
    QColor separator;
    QColor gray;
    QColor orange;
    QColor blue;
    QColor red;

    static const ColorScheme& light();
    static const ColorScheme& dark();
};

/// The look that goes with a palette: light or dark as its window background.
const ColorScheme& colorSchemeOf(const QPalette& palette);
/// The look that the widget has now: that of its window, where a window is given one.
const ColorScheme& colorSchemeOf(const QWidget& widget);

/// The palette that makes a window and all in it light or dark, whatever the desktop's own is.
QPalette paletteOf(const ColorScheme& look);

/// The desktop's own font in this size, in device-independent pixels.
QFont systemFont(int size, QFont::Weight weight = QFont::Normal);
/// The same with digits that are all equally wide, so that a changing number does not jump.
QFont monospacedDigitSystemFont(int size, QFont::Weight weight = QFont::Normal);

/// Which of a look's text colours a label has. It follows the appearance when that changes.
enum class LabelColor { label, secondary, tertiary, quaternary };

/// A text that cannot be edited. It is shown as it is, never taken for markup.
QLabel* makeLabel(const QString& text, int size, QFont::Weight weight = QFont::Normal,
                  LabelColor color = LabelColor::label);
/// The heading of a section.
QLabel* makeSectionLabel(const QString& text);
/// A push button. An ampersand in its title is an ampersand.
QPushButton* makeButton(const QString& title);

}  // namespace chimewerk
