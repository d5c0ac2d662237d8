// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>

namespace chimewerk {

/// The colours of one appearance, by role. There are two, `light()` and `dark()`, and each has a
/// variant of high contrast.
struct ColorScheme {
    QColor windowBackground;
    /// Behind lists and text.
    QColor controlBackground;
    QColor menuBackground;
    QColor label;
    QColor secondaryLabel;
    QColor tertiaryLabel;
    QColor quaternaryLabel;
    /// The text of what cannot be used now.
    QColor disabledLabel;
    QColor separator;
    /// The outline of what can be clicked or dragged.
    QColor controlEdge;
    /// Behind the selected row.
    QColor selection;
    /// Behind the selected row while another window has the keyboard.
    QColor idleSelection;
    /// Behind the row under the pointer.
    QColor hover;
    /// The program's violet: what is on, selected or standard. White is legible on it.
    QColor accent;
    /// The violet of texts and of the ring around what has the keyboard.
    QColor accentText;
    QColor green;
    QColor gray;
    QColor orange;
    QColor blue;
    QColor red;

    /// Return the variant in use.
    static const ColorScheme& light();
    static const ColorScheme& dark();
    /// Chooses the variant of both for everything that is painted from now on. Main thread only.
    static void useHighContrast(bool isHigh);
    static bool isHighContrast();

    bool isDark() const { return windowBackground.lightnessF() < 0.5F; }
};

/// Returns the scheme that a palette was made from, or the nearest one, by its window background.
const ColorScheme& colorSchemeOf(const QPalette& palette);
/// Returns the scheme in which the widget is painted now.
const ColorScheme& colorSchemeOf(const QWidget& widget);

/// Returns the opaque colour that a translucent one makes on this ground.
QColor blended(const QColor& color, const QColor& ground);
/// Returns the contrast ratio of a colour on an opaque ground, 1 to 21.
double contrast(const QColor& color, const QColor& ground);
/// Returns a colour that is `alpha` as opaque, 0 to 1, or as opaque as it must be to be legible.
QColor dimmed(QColor color, double alpha, const QColor& ground);

/// Returns the palette that gives a window and its contents these colours, whatever the
/// desktop's colours.
QPalette paletteOf(const ColorScheme& colors);
/// The same for a menu.
QPalette menuPaletteOf(const ColorScheme& colors);

}  // namespace chimewerk
