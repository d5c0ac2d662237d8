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

std::string filled(std::string_view format, std::string_view value) {
    constexpr std::string_view kHole = "{}";
    std::string text(format);
    if (const std::size_t hole = text.find(kHole); hole != std::string::npos) {
        text.replace(hole, kHole.size(), value);
    }
    return text;
}

std::string counterText(std::int64_t triggerCount) {
    if (triggerCount == 0) {
        return "Not triggered yet";
    }
    return filled(triggerCount == 1 ? "Triggered: {} time" : "Triggered: {} times",
                  std::to_string(triggerCount));
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
