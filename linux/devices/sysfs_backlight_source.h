// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "monitors/brightness_monitor.h"

namespace chimewerk {

/// The kernel's backlights. Of several, uses the first that can be read: the firmware's, then the
/// platform's, then those that drive the hardware directly.
///
/// Reads everything anew at each call, so a backlight that is plugged in or out is noticed at the
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
