// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace chimewerk {

/// The state that the gauge of the lid's angle shows. Angles are in degrees; any value is allowed.
struct GaugeState {
    /// Negative: no reading yet.
    float currentAngle = -1;
    float threshold = 90;
    /// Whether the machine has a sensor at all.
    bool sensorAvailable = false;
};

/// In device-independent pixels; the origin is at the bottom left and y grows upwards.
struct GaugePoint {
    double x = 0;
    double y = 0;
};

struct GaugeSize {
    double width = 0;
    double height = 0;
};

enum class GaugeColor { gray, orange, blue, label, tertiaryLabel, quaternaryLabel };

struct GaugePaint {
    GaugeColor color = GaugeColor::gray;
    /// Multiplied with the colour's own opacity, 0 to 1.
    double alpha = 1;
};

/// A filled upper half of a disc.
struct GaugeFace {
    GaugePoint center;
    double radius = 0;
    GaugePaint paint;
};

/// A stroked upper half of a circle.
struct GaugeRim {
    GaugePoint center;
    double radius = 0;
    double width = 0;
    GaugePaint paint;
};

struct GaugeLine {
    GaugePoint from;
    GaugePoint to;
    double width = 0;
    GaugePaint paint;
};

/// A filled disc.
struct GaugeHub {
    GaugePoint center;
    double radius = 0;
    GaugePaint paint;
};

enum class GaugeWeight { regular, semibold, bold };

struct GaugeFont {
    int size = 0;
    GaugeWeight weight = GaugeWeight::regular;
    bool equallyWideDigits = false;
};

struct GaugeText {
    std::string text;
    GaugeFont font;
    GaugeColor color = GaugeColor::label;
    /// The lower left corner of the text's measured box.
    GaugePoint origin;
    GaugeSize size;
};

using GaugeShape = std::variant<GaugeFace, GaugeRim, GaugeLine, GaugeHub, GaugeText>;
using MeasureGaugeText = std::function<GaugeSize(const std::string& text, const GaugeFont& font)>;

/// Returns the shapes of the gauge in painting order. 0° is at the left end, 180° at the right end;
/// angles beyond are not clamped. An angle that is not finite has no needle and no mark.
std::vector<GaugeShape> gaugeShapes(GaugeSize bounds, const GaugeState& state,
                                    const MeasureGaugeText& measure);

/// Returns a text for assistive programs: "112°, threshold 90°".
std::string gaugeDescription(const GaugeState& state);

}  // namespace chimewerk
