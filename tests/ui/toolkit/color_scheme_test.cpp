// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/color_scheme.h"

#include <gtest/gtest.h>

#include "ui/dashboard/sidebar_row_painting.h"
#include "ui/rules/appearance.h"

namespace chimewerk {
namespace {

/// The colours in both variants, and the contrast that they must reach.
class TheColors : public testing::TestWithParam<bool> {
protected:
    TheColors() { ColorScheme::useHighContrast(GetParam()); }
    ~TheColors() override { ColorScheme::useHighContrast(false); }

    const double text_ = GetParam() ? 7 : 4.5;
    /// Of texts that are dimmed, and of the edges of controls.
    const double dimmed_ = GetParam() ? 4.5 : 3;
};
INSTANTIATE_TEST_SUITE_P(OfBothVariants, TheColors, testing::Bool());

QColor faded(QColor color, float alpha) {
    color.setAlphaF(color.alphaF() * alpha);
    return color;
}

TEST_P(TheColors, ContrastWithWhatIsBehindThem) {
    for (const ColorScheme* const colors : {&ColorScheme::light(), &ColorScheme::dark()}) {
        for (const QColor& ground : {colors->windowBackground, colors->menuBackground}) {
            SCOPED_TRACE(testing::Message() << "dark " << colors->isDark() << ", ground "
                                            << ground.name().toStdString());
            for (const QColor& text : {colors->label, colors->secondaryLabel, colors->tertiaryLabel,
                                       colors->quaternaryLabel}) {
                EXPECT_GE(contrast(text, ground), text_);
                // An event that is off has its panel at this opacity.
                EXPECT_GE(contrast(faded(text, 0.6F), ground), dimmed_);
            }
            EXPECT_GE(contrast(colors->accentText, ground), text_);
            EXPECT_GE(contrast(colors->orange, ground), text_);
            EXPECT_GE(contrast(colors->red, ground), text_);
            EXPECT_GE(contrast(colors->disabledLabel, ground), dimmed_);
            EXPECT_GE(contrast(colors->controlEdge, ground), dimmed_);
        }
        EXPECT_GE(contrast(colors->accent, colors->windowBackground), 3);
        EXPECT_GE(contrast(Qt::white, colors->accent), 4.5);
    }
    // The green for light backgrounds is given.
    EXPECT_GE(contrast(ColorScheme::dark().green, ColorScheme::dark().windowBackground), text_);
    if (GetParam()) {
        EXPECT_GE(contrast(ColorScheme::light().green, Qt::white), text_);
    }
}

TEST_P(TheColors, ContrastInEveryRowOfTheSidebar) {
    const auto dark = static_cast<float>(appearance(true).sidebarBackground->white);
    for (const ColorScheme* const colors : {&ColorScheme::light(), &ColorScheme::dark()}) {
        QPalette palette = paletteOf(*colors);
        palette.setColor(QPalette::Window, colors->isDark() && !GetParam()
                                               ? QColor::fromRgbF(dark, dark, dark)
                                               : colors->controlBackground);
        for (const QStyle::State state : std::initializer_list<QStyle::State>{
                 QStyle::State_None, QStyle::State_MouseOver, QStyle::State_Selected,
                 QStyle::State_Selected | QStyle::State_Active}) {
            for (const double alpha : {1.0, 0.4}) {
                SCOPED_TRACE(testing::Message() << "dark " << colors->isDark() << ", state "
                                                << state.toInt() << ", opacity " << alpha);
                const SidebarRowColors row = sidebarRowColors(palette, state, alpha);
                for (const QColor& text : {row.name, row.hint, row.badge}) {
                    EXPECT_GE(contrast(text, row.ground), alpha < 1 ? dimmed_ : text_);
                }
            }
        }
    }
}

}  // namespace
}  // namespace chimewerk
