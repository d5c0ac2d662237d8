#pragma once

#include <functional>
#include <string>

#include "platform/hardware_query.h"

namespace chimewerk {

/// What kind of machine this is, as Linux knows it. It has "hw.optional.arm64" with the value 1 where the
/// lid-angle event can work: on 64-bit ARM machines and wherever there is a sensor in the hinge.
class LinuxHardwareQuery final : public HardwareQuery {
public:
    /// This machine; a sensor is looked for at each query.
    LinuxHardwareQuery();
    /// `machine` is the kernel's name for the machine's processor, such as "x86_64".
    LinuxHardwareQuery(std::string machine, std::function<bool()> hasHingeSensor);

    /// Whether there is a sensor in the hinge at this moment, whoever may open it.
    static bool hasHingeSensor();

    std::optional<std::int32_t> integer(std::string_view name) const override;

private:
    const std::string machine_;
    const std::function<bool()> hasHingeSensor_;
};

}  // namespace chimewerk
