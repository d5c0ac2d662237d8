// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/angle_gauge_view.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>

#include "ui/toolkit/color_scheme.h"

namespace chimewerk {
namespace {

constexpr int kOverhang = AngleGaugeView::kOverhang;

/// Returns a dial in bounds of 240 x 150, with a radius of 104 around the point (120, 16) from the
/// lower left.
std::unique_ptr<AngleGaugeView> viewOf(float angle,
                                       const ColorScheme& colors = ColorScheme::light()) {
    auto view = std::make_unique<AngleGaugeView>();
    view->setPalette(paletteOf(colors));
    view->resize(240 + 2 * kOverhang, 150 + kOverhang);
    view->sensorAvailable = true;
    view->currentAngle = angle;
    return view;
}

/// Returns the colour at a distance from the centre of the dial, in the direction of one of
/// its values.
QColor at(const QImage& image, double angle, double distance) {
    const double direction = (180 - angle) * std::numbers::pi / 180;
    const double x = kOverhang + 120 + std::cos(direction) * distance;
    const double y = kOverhang + 150 - (16 + std::sin(direction) * distance);
    return image.pixelColor(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
}

bool isAlike(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) < 48 && std::abs(one.green() - other.green()) < 48 &&
           std::abs(one.blue() - other.blue()) < 48;
}

TEST(TheAngleGaugeView, PointsItsNeedleUpwards) {
    for (const ColorScheme* const colors : {&ColorScheme::light(), &ColorScheme::dark()}) {
        for (const double angle : {20.0, 70.0, 160.0}) {
            SCOPED_TRACE(angle);
            const QImage image = viewOf(static_cast<float>(angle), *colors)->grab().toImage();
            EXPECT_TRUE(isAlike(at(image, angle, 80), colors->blue));
            EXPECT_TRUE(isAlike(at(image, angle, 98), colors->blue));
            EXPECT_FALSE(isAlike(at(image, angle, 106), colors->blue));
            EXPECT_FALSE(isAlike(at(image, 180 - angle, 80), colors->blue));
            EXPECT_TRUE(isAlike(at(image, 90, 88), colors->orange));
            EXPECT_TRUE(isAlike(at(image, 90, 107), colors->orange));
            EXPECT_FALSE(isAlike(at(image, 90, 80), colors->orange));
        }
    }
}

TEST(TheAngleGaugeView, DescribesWhatItPaints) {
    AngleGaugeView view;
    EXPECT_EQ(view.accessibleName(), "Lid angle");
    EXPECT_EQ(view.accessibleDescription(), "N/A, no sensor in the hinge");
    view.sensorAvailable = true;
    view.currentAngle = 112.7F;
    EXPECT_EQ(view.accessibleDescription(), "N/A, no sensor in the hinge");
    view.grab();
    EXPECT_EQ(view.accessibleDescription(), "112°, threshold 90°");
}

TEST(TheAngleGaugeView, PaintsWhateverItIsGiven) {
    for (const float angle : {511.0F, 3e38F, std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN()}) {
        for (const QSize size : {QSize(256, 158), QSize(20, 20), QSize(1, 1)}) {
            const auto view = viewOf(angle);
            view->threshold = -angle;
            view->resize(size);
            EXPECT_FALSE(view->grab().isNull());
        }
    }
}

}  // namespace
}  // namespace chimewerk
