#pragma once

#include <optional>
#include <string>

#include "monitors/brightness_monitor.h"

namespace chimewerk {

/// The kernel's backlights. Of several the firmware's comes first, then the platform's, then those that drive
/// the hardware directly; one that cannot be read gives way to the next.
///
/// Everything is read anew at each call, so that a backlight that comes with a docking station, goes and
/// comes back is seen at the next call. A machine without one has no brightness.
class SysfsBacklightSource final : public BrightnessSource {
public:
    explicit SysfsBacklightSource(std::string folder = "/sys/class/backlight")
        : folder_(std::move(folder)) {}

    std::optional<float> brightness() override;

private:
    const std::string folder_;
};

}  // namespace chimewerk
