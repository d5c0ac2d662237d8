#pragma once

#include <optional>

#include "monitors/brightness_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A display whose brightness the test sets.
class FakeBrightnessSource final : public BrightnessSource, public Noting {
public:
    std::optional<float> level;

    std::optional<float> brightness() override {
        note("display");
        return level;
    }
};

}  // namespace chimewerk
