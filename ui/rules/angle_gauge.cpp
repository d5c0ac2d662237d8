// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/angle_gauge.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <utility>

namespace chimewerk {

namespace {

constexpr double kBaselineHeight = 16;
constexpr double kSideMargin = 16;
constexpr double kTopMargin = 10;
constexpr double kLabelDistance = 10;
constexpr double kReadoutHeight = 0.38;
constexpr double kNoteGap = 2;

constexpr const char* kNoSensorNote = "Apple Silicon required";

struct Tick {
    double angle;
    std::string_view label;
};

constexpr Tick kTicks[] = {{0, "0°"}, {45, ""}, {90, "90°"}, {135, ""}, {180, "180°"}};

bool hasReading(const GaugeState& state) {
    return state.sensorAvailable && std::isfinite(state.currentAngle) && state.currentAngle >= 0;
}

/// Returns whole degrees, truncated. Values too large for an integer are clamped.
std::string degrees(float angle) {
    constexpr float kLimit = 1e9F;
    return std::to_string(static_cast<int>(std::clamp(angle, -kLimit, kLimit))) + "°";
}

std::string placeholder(const GaugeState& state) {
    return state.sensorAvailable ? "— °" : "N/A";
}

class Drawing {
public:
    Drawing(GaugeSize bounds, const MeasureGaugeText& measure)
        : measure_(measure),
          center_{bounds.width / 2, kBaselineHeight},
          radius_(std::min(bounds.width / 2 - kSideMargin,
                           bounds.height - kBaselineHeight - kTopMargin)) {}

    void dial();
    void thresholdMark(float threshold);
    void reading(float angle);
    void noReading(const GaugeState& state);

    std::vector<GaugeShape> take() { return std::move(shapes_); }

private:
    GaugePoint at(double angle, double distance) const;
    GaugePoint readoutCenter() const { return {center_.x, center_.y + radius_ * kReadoutHeight}; }
    void radialLine(double angle, double from, double to, double width, GaugePaint paint);
    GaugePoint text(std::string text, GaugeFont font, GaugeColor color, GaugePoint center);

    const MeasureGaugeText& measure_;
    const GaugePoint center_;
    const double radius_;
    std::vector<GaugeShape> shapes_;
};

GaugePoint Drawing::at(double angle, double distance) const {
    const double direction = (180 - angle) * std::numbers::pi / 180;
    return {center_.x + std::cos(direction) * distance, center_.y + std::sin(direction) * distance};
}

void Drawing::radialLine(double angle, double from, double to, double width, GaugePaint paint) {
    shapes_.emplace_back(GaugeLine{at(angle, from), at(angle, to), width, paint});
}

/// Adds the text centred at `center`; returns its origin.
GaugePoint Drawing::text(std::string text, GaugeFont font, GaugeColor color, GaugePoint center) {
    const GaugeSize size = measure_(text, font);
    const GaugePoint origin{center.x - size.width / 2, center.y - size.height / 2};
    shapes_.emplace_back(GaugeText{std::move(text), font, color, origin, size});
    return origin;
}

void Drawing::dial() {
    shapes_.emplace_back(GaugeFace{center_, radius_, {GaugeColor::gray, 0.08}});
    shapes_.emplace_back(GaugeRim{center_, radius_, 2.5, {GaugeColor::gray, 0.35}});
    shapes_.emplace_back(GaugeLine{{center_.x - radius_, center_.y},
                                   {center_.x + radius_, center_.y},
                                   1,
                                   {GaugeColor::gray, 0.25}});
    for (const Tick& tick : kTicks) {
        radialLine(tick.angle, radius_ - 10, radius_, 1.5, {GaugeColor::gray, 0.5});
        if (!tick.label.empty()) {
            text(std::string(tick.label), {.size = 9}, GaugeColor::tertiaryLabel,
                 at(tick.angle, radius_ + kLabelDistance));
        }
    }
}

void Drawing::thresholdMark(float threshold) {
    radialLine(static_cast<double>(threshold), radius_ - 18, radius_ + 6, 2.5,
               {GaugeColor::orange, 0.85});
}

void Drawing::reading(float angle) {
    radialLine(static_cast<double>(angle), 0, radius_ - 4, 3, {GaugeColor::blue});
    shapes_.emplace_back(GaugeHub{center_, 5, {GaugeColor::blue}});
    text(degrees(angle), {.size = 18, .weight = GaugeWeight::bold, .equallyWideDigits = true},
         GaugeColor::label, readoutCenter());
}

void Drawing::noReading(const GaugeState& state) {
    const GaugePoint origin =
        text(placeholder(state), {.size = 13, .weight = GaugeWeight::semibold},
             GaugeColor::tertiaryLabel, readoutCenter());
    if (!state.sensorAvailable) {
        const GaugeFont font{.size = 9};
        const double height = measure_(kNoSensorNote, font).height;
        text(kNoSensorNote, font, GaugeColor::quaternaryLabel,
             {center_.x, origin.y - kNoteGap - height / 2});
    }
}

}  // namespace

std::vector<GaugeShape> gaugeShapes(GaugeSize bounds, const GaugeState& state,
                                    const MeasureGaugeText& measure) {
    Drawing drawing(bounds, measure);
    drawing.dial();
    if (state.sensorAvailable && std::isfinite(state.threshold)) {
        drawing.thresholdMark(state.threshold);
    }
    if (hasReading(state)) {
        drawing.reading(state.currentAngle);
    } else {
        drawing.noReading(state);
    }
    return drawing.take();
}

std::string gaugeDescription(const GaugeState& state) {
    if (!state.sensorAvailable) {
        return placeholder(state) + ", " + kNoSensorNote;
    }
    const std::string reading = hasReading(state) ? degrees(state.currentAngle) : "no reading yet";
    return std::isfinite(state.threshold) ? reading + ", threshold " + degrees(state.threshold)
                                          : reading;
}

}  // namespace chimewerk
