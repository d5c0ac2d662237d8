// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QPalette>
#include <QWidget>

namespace chimewerk {

/// The colours of one appearance, by role. There are two: `light()` and `dark()`.
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

    bool isDark() const { return this == &dark(); }
};

/// Returns the scheme that a palette was made from, or the nearest one, by its window background.
const ColorScheme& colorSchemeOf(const QPalette& palette);
/// Returns the scheme in which the widget is painted now.
const ColorScheme& colorSchemeOf(const QWidget& widget);

/// Returns the palette that gives a window and its contents these colours, whatever the
/// desktop's colours.
QPalette paletteOf(const ColorScheme& colors);

}  // namespace chimewerk
