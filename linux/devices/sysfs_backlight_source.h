// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "monitors/brightness_monitor.h"

namespace chimewerk {

/// The display's brightness from the kernel's backlights. If there are several, uses the first
/// readable one of: the firmware's, the platform's, those that drive the hardware directly.
///
/// Reads everything again at each call, so a backlight that is plugged in or out is noticed at the
/// next call. A machine without one has no brightness.
class SysfsBacklightSource final : public BrightnessSource {
public:
    explicit SysfsBacklightSource(std::string folder = "/sys/class/backlight")
        : folder_(std::move(folder)) {}

    std::optional<float> brightness() override;

private:
    const std::string folder_;
};

}  // namespace chimewerk
