#pragma once

#include <optional>

#include "monitors/volume_monitor.h"
#include "support/journal.h"

namespace chimewerk {

/// A default output device whose volumes the test sets; with neither there is no device.
class FakeOutputVolumeSource final : public OutputVolumeSource, public Noting {
public:
    std::optional<float> main;
    std::optional<float> firstChannel;

    std::optional<float> volume(Element element) override {
        note("output");
        return element == Element::main ? main : firstChannel;
    }
};

}  // namespace chimewerk
