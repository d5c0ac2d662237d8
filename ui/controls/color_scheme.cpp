// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/color_scheme.h"

namespace chimewerk {

namespace {

QColor black(double alpha) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha));
}

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}

}  // namespace

const ColorScheme& ColorScheme::light() {
    static const ColorScheme colors{.windowBackground = QColor(0xf5, 0xf5, 0xf7),
                                    .controlBackground = QColor(0xff, 0xff, 0xff),
                                    .label = black(0.87),
                                    .secondaryLabel = black(0.60),
                                    .tertiaryLabel = black(0.46),
                                    .quaternaryLabel = black(0.34),
                                    .separator = black(0.12),
                                    .gray = QColor(0x8e, 0x8e, 0x93),
                                    .orange = QColor(0xe0, 0x7b, 0x00),
                                    .blue = QColor(0x0a, 0x6c, 0xe0),
                                    .red = QColor(0xd7, 0x2c, 0x21)};
    return colors;
}

const ColorScheme& ColorScheme::dark() {
    static const ColorScheme colors{.windowBackground = QColor(0x2a, 0x2a, 0x2c),
                                    .controlBackground = QColor(0x1e, 0x1e, 0x20),
                                    .label = white(0.88),
                                    .secondaryLabel = white(0.62),
                                    .tertiaryLabel = white(0.46),
                                    .quaternaryLabel = white(0.34),
                                    .separator = white(0.14),
                                    .gray = QColor(0x98, 0x98, 0x9d),
                                    .orange = QColor(0xff, 0x9f, 0x0a),
                                    .blue = QColor(0x3d, 0x96, 0xff),
                                    .red = QColor(0xff, 0x5a, 0x50)};
    return colors;
}

const ColorScheme& colorSchemeOf(const QPalette& palette) {
    return palette.color(QPalette::Window).lightnessF() < 0.5F ? ColorScheme::dark()
                                                               : ColorScheme::light();
}

const ColorScheme& colorSchemeOf(const QWidget& widget) {
    return colorSchemeOf(widget.palette());
}

QPalette paletteOf(const ColorScheme& colors) {
    const bool dark = colors.isDark();
    QPalette palette;
    palette.setColor(QPalette::Window, colors.windowBackground);
    palette.setColor(QPalette::WindowText, colors.label);
    palette.setColor(QPalette::Base, colors.controlBackground);
    palette.setColor(QPalette::AlternateBase, colors.windowBackground);
    palette.setColor(QPalette::Text, colors.label);
    palette.setColor(QPalette::PlaceholderText, colors.tertiaryLabel);
    palette.setColor(QPalette::Button, dark ? QColor(0x48, 0x48, 0x4b) : QColor(0xff, 0xff, 0xff));
    palette.setColor(QPalette::ButtonText, colors.label);
    palette.setColor(QPalette::BrightText, QColor(Qt::white));
    // White must be legible on it, and the blue for dark backgrounds is too light for that.
    palette.setColor(QPalette::Highlight, dark ? colors.blue.darker(128) : colors.blue);
    palette.setColor(QPalette::HighlightedText, QColor(Qt::white));
    palette.setColor(QPalette::Link, colors.blue);
    palette.setColor(QPalette::ToolTipBase,
                     dark ? QColor(0x3a, 0x3a, 0x3d) : QColor(0xff, 0xff, 0xff));
    palette.setColor(QPalette::ToolTipText, colors.label);
    palette.setColor(QPalette::Light, dark ? QColor(0x5a, 0x5a, 0x5e) : QColor(0xff, 0xff, 0xff));
    palette.setColor(QPalette::Midlight,
                     dark ? QColor(0x50, 0x50, 0x54) : QColor(0xee, 0xee, 0xf0));
    palette.setColor(QPalette::Mid, dark ? QColor(0x20, 0x20, 0x22) : QColor(0xc4, 0xc4, 0xc8));
    palette.setColor(QPalette::Dark, dark ? QColor(0x16, 0x16, 0x18) : QColor(0xa8, 0xa8, 0xac));
    palette.setColor(QPalette::Shadow, black(0.6));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, colors.quaternaryLabel);
    }
    return palette;
}

}  // namespace chimewerk
