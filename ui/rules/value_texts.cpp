// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/value_texts.h"

#include <algorithm>
#include <cmath>

namespace chimewerk {

namespace {

/// Returns the integer part. NaN is shown as 0, and huge values are clamped; neither is
/// ever stored.
std::string integerPart(float value) {
    constexpr float kMost = 1e9F;
    const float shown = std::isnan(value) ? 0.0F : std::clamp(value, -kMost, kMost);
    return std::to_string(static_cast<std::int64_t>(shown));
}

}  // namespace

std::string counterText(std::int64_t triggerCount) {
    if (triggerCount == 0) {
        return "Not triggered yet";
    }
    return "Triggered: " + std::to_string(triggerCount) + " " +
           (triggerCount == 1 ? "time" : "times");
}

std::string volumeText(float volume) {
    return percentText(volume * 100.0F);
}

std::string degreesText(float degrees) {
    return integerPart(degrees) + "°";
}

std::string percentText(float percent) {
    return integerPart(percent) + "%";
}

std::string lastPathComponent(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    const std::size_t slash = path.rfind('/');
    return std::string(path.size() > 1 && slash != std::string_view::npos ? path.substr(slash + 1)
                                                                          : path);
}

}  // namespace chimewerk
