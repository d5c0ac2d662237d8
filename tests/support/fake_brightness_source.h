#pragma once

#include <optional>

#include "monitors/brightness_monitor.h"

namespace chimewerk {

/// A display whose brightness the test sets.
class FakeBrightnessSource final : public BrightnessSource {
public:
    std::optional<float> level;

    std::optional<float> brightness() override { return level; }
};

}  // namespace chimewerk
