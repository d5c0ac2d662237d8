// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/angle_gauge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace chimewerk {
namespace {

/// Measures a font whose letters are as wide as it is large, for easy arithmetic.
GaugeSize measure(const std::string& text, const GaugeFont& font) {
    return {static_cast<double>(text.size()) * font.size, 2.0 * font.size};
}

std::vector<GaugeShape> shapesOf(const GaugeState& state, GaugeSize bounds = {240, 150}) {
    return gaugeShapes(bounds, state, measure);
}

template <typename Shape>
std::vector<Shape> only(const std::vector<GaugeShape>& shapes) {
    std::vector<Shape> found;
    for (const GaugeShape& shape : shapes) {
        if (const auto* const one = std::get_if<Shape>(&shape)) {
            found.push_back(*one);
        }
    }
    return found;
}

/// Returns the line of this colour, the last of the gray ones; all zero if there is none.
GaugeLine lineOf(const std::vector<GaugeShape>& shapes, GaugeColor color) {
    GaugeLine found;
    for (const GaugeLine& line : only<GaugeLine>(shapes)) {
        if (line.paint.color == color) {
            found = line;
        }
    }
    return found;
}

void expectAt(GaugePoint point, double x, double y) {
    EXPECT_NEAR(point.x, x, 1e-4);
    EXPECT_NEAR(point.y, y, 1e-4);
}

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(TheAngleGauge, FitsItsDialIntoTheBounds) {
    struct Case {
        GaugeSize bounds;
        double radius;
    };
    for (const auto& [bounds, radius] : {Case{{240, 150}, 104}, Case{{400, 130}, 104},
                                         Case{{100, 130}, 34}, Case{{20, 20}, -6}, Case{{}, -26}}) {
        SCOPED_TRACE(testing::Message() << bounds.width << " x " << bounds.height);
        const auto shapes = shapesOf({}, bounds);
        EXPECT_EQ(only<GaugeFace>(shapes).at(0).radius, radius);
        EXPECT_EQ(only<GaugeRim>(shapes).at(0).radius, radius);
        expectAt(only<GaugeRim>(shapes).at(0).center, bounds.width / 2, 16);
    }
}

TEST(TheAngleGauge, SpreadsItsTicksFromLeftToRight) {
    const auto shapes = shapesOf({});
    const auto lines = only<GaugeLine>(shapes);
    ASSERT_EQ(lines.size(), 6U);  // The baseline and five ticks.
    expectAt(lines[0].from, 16, 16);
    expectAt(lines[0].to, 224, 16);
    for (std::size_t i = 0; i < 5; ++i) {
        const double angle = static_cast<double>(i) * std::numbers::pi / 4;
        expectAt(lines[1 + i].from, 120 - 94 * std::cos(angle), 16 + 94 * std::sin(angle));
        expectAt(lines[1 + i].to, 120 - 104 * std::cos(angle), 16 + 104 * std::sin(angle));
    }

    const auto texts = only<GaugeText>(shapes);
    expectAt(texts.at(0).origin, 6 - 13.5, 16 - 9);  // "0°" is three bytes, so it is 27 wide.
    expectAt(texts.at(1).origin, 120 - 18, 130 - 9);
    expectAt(texts.at(2).origin, 234 - 22.5, 16 - 9);
}

TEST(TheAngleGauge, SaysAndPointsAtOnlyWhatItKnows) {
    struct Case {
        GaugeState state;
        std::vector<std::string> inside;
        std::string description;
        bool needle;
        bool mark;
    };
    const std::vector<std::string> none = {"N/A", "Apple Silicon required"};
    const std::string noSensor = "N/A, Apple Silicon required";
    for (const auto& [state, inside, description, needle, mark] : std::initializer_list<Case>{
             {{}, none, noSensor, false, false},
             {{47, 90, false}, none, noSensor, false, false},
             {{-1, 90, true}, {"— °"}, "no reading yet, threshold 90°", false, true},
             {{0, 90.9F, true}, {"0°"}, "0°, threshold 90°", true, true},
             {{-0.0F, 90, true}, {"0°"}, "0°, threshold 90°", true, true},
             {{112.7F, kNan, true}, {"112°"}, "112°", true, false},
             {{511, -1, true}, {"511°"}, "511°, threshold -1°", true, true},
             {{kNan, kNan, true}, {"— °"}, "no reading yet", false, false},
             {{kInfinity, -kInfinity, true}, {"— °"}, "no reading yet", false, false},
             {{3e38F, -3e38F, true},
              {"1000000000°"},
              "1000000000°, threshold -1000000000°",
              true,
              true}}) {
        SCOPED_TRACE(testing::Message() << state.currentAngle << " " << state.threshold);
        const auto shapes = shapesOf(state);
        std::vector<std::string> texts;
        for (const GaugeText& text : only<GaugeText>(shapes)) {
            texts.push_back(text.text);
        }
        std::vector<std::string> expected = {"0°", "90°", "180°"};
        expected.insert(expected.end(), inside.begin(), inside.end());
        EXPECT_EQ(texts, expected);
        EXPECT_EQ(gaugeDescription(state), description);
        EXPECT_EQ(lineOf(shapes, GaugeColor::blue).width, needle ? 3 : 0);
        EXPECT_EQ(only<GaugeHub>(shapes).size(), needle ? 1U : 0U);
        EXPECT_EQ(lineOf(shapes, GaugeColor::orange).width, mark ? 2.5 : 0);
    }
}

TEST(TheAngleGauge, PointsItsNeedleAndMarkAtTheirAngles) {
    struct Case {
        float angle;
        double x;
        double y;
    };
    // Beyond 180° the scale continues below the baseline.
    for (const auto& [angle, x, y] :
         {Case{0, -1, 0}, Case{60, -0.5, std::sqrt(0.75)}, Case{90, 0, 1}, Case{180, 1, 0},
          Case{210, std::sqrt(0.75), -0.5}}) {
        SCOPED_TRACE(angle);
        const auto shapes = shapesOf({angle, angle, true});
        const GaugeLine needle = lineOf(shapes, GaugeColor::blue);
        expectAt(needle.from, 120, 16);
        expectAt(needle.to, 120 + x * 100, 16 + y * 100);
        const GaugeLine mark = lineOf(shapes, GaugeColor::orange);
        expectAt(mark.from, 120 + x * 86, 16 + y * 86);
        expectAt(mark.to, 120 + x * 110, 16 + y * 110);
    }
}

TEST(TheAngleGauge, CentresItsReadoutAndPutsTheNoteBelow) {
    const auto known = only<GaugeText>(shapesOf({112.7F, 90, true})).back();
    expectAt(known.origin, 120 - 45, 55.52 - 18);

    const auto unknown = only<GaugeText>(shapesOf({}));
    ASSERT_EQ(unknown.size(), 5U);
    expectAt(unknown[3].origin, 120 - 19.5, 55.52 - 13);
    expectAt(unknown[4].origin, 120 - 99, 42.52 - 18 - 2);
}

}  // namespace
}  // namespace chimewerk
