// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "monitors/brightness_monitor.h"

namespace chimewerk {

/// The display's brightness from the kernel's backlights. If there are several, follows the one
/// that changed last; before any has changed, a firmware backlight, else a platform one, else one
/// that drives the hardware directly. A backlight of an output that is off comes last.
///
/// When it starts to follow another backlight, it shifts that one's levels so that the brightness
/// does not jump. A shifted level may be outside 0 to 1.
///
/// Reads everything again at each call, so a backlight that is plugged in or out is noticed at the
/// next call. A machine without one has no brightness.
class SysfsBacklightSource final : public BrightnessSource {
public:
    explicit SysfsBacklightSource(std::string folder = "/sys/class/backlight")
        : folder_(std::move(folder)) {}

    std::optional<float> brightness() override;

private:
    struct Backlight {
        bool isDark;
        std::size_t rank;
        std::string path;
        float level;
    };

    std::vector<Backlight> readAll() const;
    bool hasChanged(const Backlight& backlight) const;
    const Backlight& choose(const std::vector<Backlight>& all) const;

    const std::string folder_;
    /// The path of the backlight that is followed; empty if there is none.
    std::string current_;
    /// The levels at the last call, by path.
    std::map<std::string, float> levels_;
    float shift_ = 0;
    float told_ = 0;
};

}  // namespace chimewerk
