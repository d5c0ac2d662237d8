// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/color_scheme.h"

#include <algorithm>
#include <cmath>

namespace chimewerk {

namespace {

QColor black(double alpha) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha));
}

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}

double luminance(const QColor& color) {
    const auto linear = [](float part) {
        const auto value = static_cast<double>(part);
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

const ColorScheme& softLight() {
    static const ColorScheme colors{.windowBackground = QColor(0xf5, 0xf5, 0xf7),
                                    .controlBackground = QColor(0xff, 0xff, 0xff),
                                    .menuBackground = QColor(0xff, 0xff, 0xff),
                                    .label = black(0.88),
                                    .secondaryLabel = black(0.75),
                                    .tertiaryLabel = black(0.71),
                                    .quaternaryLabel = black(0.71),
                                    .disabledLabel = black(0.46),
                                    .separator = black(0.12),
                                    .controlEdge = black(0.45),
                                    .selection = QColor(0x66, 0x26, 0xcc, 38),
                                    .idleSelection = black(0.12),
                                    .hover = black(0.05),
                                    .accent = QColor::fromRgbF(0.40F, 0.15F, 0.80F),
                                    .accentText = QColor::fromRgbF(0.40F, 0.15F, 0.80F),
                                    .green = QColor::fromRgbF(0.15F, 0.65F, 0.35F),
                                    .gray = QColor(0x8e, 0x8e, 0x93),
                                    .orange = QColor(0xa8, 0x54, 0x00),
                                    .blue = QColor(0x0a, 0x6c, 0xe0),
                                    .red = QColor(0xd0, 0x28, 0x1e)};
    return colors;
}

const ColorScheme& softDark() {
    static const ColorScheme colors{.windowBackground = QColor(0x2a, 0x2a, 0x2c),
                                    .controlBackground = QColor(0x1e, 0x1e, 0x20),
                                    .menuBackground = QColor(0x32, 0x32, 0x35),
                                    .label = white(0.90),
                                    .secondaryLabel = white(0.70),
                                    .tertiaryLabel = white(0.63),
                                    .quaternaryLabel = white(0.63),
                                    .disabledLabel = white(0.42),
                                    .separator = white(0.14),
                                    .controlEdge = white(0.42),
                                    .selection = QColor(0x84, 0x55, 0xf0, 88),
                                    .idleSelection = white(0.14),
                                    .hover = white(0.06),
                                    .accent = QColor(0x84, 0x55, 0xf0),
                                    .accentText = QColor(0xb7, 0x9c, 0xff),
                                    .green = QColor(0x4c, 0xc4, 0x7f),
                                    .gray = QColor(0x98, 0x98, 0x9d),
                                    .orange = QColor(0xff, 0x9f, 0x0a),
                                    .blue = QColor(0x3d, 0x96, 0xff),
                                    .red = QColor(0xff, 0x8a, 0x80)};
    return colors;
}

const ColorScheme& strongLight() {
    static const ColorScheme colors{.windowBackground = QColor(0xff, 0xff, 0xff),
                                    .controlBackground = QColor(0xff, 0xff, 0xff),
                                    .menuBackground = QColor(0xff, 0xff, 0xff),
                                    .label = black(1),
                                    .secondaryLabel = black(0.95),
                                    .tertiaryLabel = black(0.92),
                                    .quaternaryLabel = black(0.92),
                                    .disabledLabel = black(0.62),
                                    .separator = black(0.62),
                                    .controlEdge = black(0.85),
                                    .selection = QColor(0x4a, 0x16, 0xa0, 60),
                                    .idleSelection = black(0.14),
                                    .hover = black(0.1),
                                    .accent = QColor(0x4a, 0x16, 0xa0),
                                    .accentText = QColor(0x4a, 0x16, 0xa0),
                                    .green = QColor(0x0b, 0x5c, 0x2c),
                                    .gray = QColor(0x4a, 0x4a, 0x4f),
                                    .orange = QColor(0x7a, 0x3a, 0x00),
                                    .blue = QColor(0x0a, 0x3f, 0x8c),
                                    .red = QColor(0x9a, 0x14, 0x0c)};
    return colors;
}

const ColorScheme& strongDark() {
    static const ColorScheme colors{.windowBackground = QColor(0x00, 0x00, 0x00),
                                    .controlBackground = QColor(0x00, 0x00, 0x00),
                                    .menuBackground = QColor(0x0d, 0x0d, 0x0f),
                                    .label = white(1),
                                    .secondaryLabel = white(0.95),
                                    .tertiaryLabel = white(0.92),
                                    .quaternaryLabel = white(0.92),
                                    .disabledLabel = white(0.62),
                                    .separator = white(0.62),
                                    .controlEdge = white(0.85),
                                    .selection = QColor(0x84, 0x55, 0xf0, 120),
                                    .idleSelection = white(0.20),
                                    .hover = white(0.14),
                                    .accent = QColor(0x84, 0x55, 0xf0),
                                    .accentText = QColor(0xcb, 0xb8, 0xff),
                                    .green = QColor(0x7e, 0xe0, 0xa4),
                                    .gray = QColor(0xc4, 0xc4, 0xc8),
                                    .orange = QColor(0xff, 0xbf, 0x5e),
                                    .blue = QColor(0x8c, 0xc2, 0xff),
                                    .red = QColor(0xff, 0xb0, 0xa8)};
    return colors;
}

bool usesHighContrast = false;

}  // namespace

const ColorScheme& ColorScheme::light() {
    return usesHighContrast ? strongLight() : softLight();
}

const ColorScheme& ColorScheme::dark() {
    return usesHighContrast ? strongDark() : softDark();
}

void ColorScheme::useHighContrast(bool isHigh) {
    usesHighContrast = isHigh;
}

bool ColorScheme::isHighContrast() {
    return usesHighContrast;
}

QColor blended(const QColor& color, const QColor& ground) {
    const auto part = [alpha = color.alphaF()](float above, float below) {
        return above * alpha + below * (1 - alpha);
    };
    return QColor::fromRgbF(part(color.redF(), ground.redF()),
                            part(color.greenF(), ground.greenF()),
                            part(color.blueF(), ground.blueF()));
}

double contrast(const QColor& color, const QColor& ground) {
    const double one = luminance(blended(color, ground)) + 0.05;
    const double other = luminance(ground) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QColor dimmed(QColor color, double alpha, const QColor& ground) {
    const double legible = ColorScheme::isHighContrast() ? 4.5 : 3;
    color.setAlphaF(color.alphaF() * static_cast<float>(alpha));
    while (contrast(color, ground) < legible && color.alphaF() < 1) {
        color.setAlphaF(std::min(1.0F, color.alphaF() + 0.01F));
    }
    return color;
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
    palette.setColor(QPalette::Highlight, colors.accent);
    palette.setColor(QPalette::HighlightedText, QColor(Qt::white));
    palette.setColor(QPalette::Link, colors.accentText);
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
        palette.setColor(QPalette::Disabled, role, colors.disabledLabel);
    }
    return palette;
}

QPalette menuPaletteOf(const ColorScheme& colors) {
    QPalette palette = paletteOf(colors);
    palette.setColor(QPalette::Window, colors.menuBackground);
    palette.setColor(QPalette::Base, colors.menuBackground);
    return palette;
}

}  // namespace chimewerk
