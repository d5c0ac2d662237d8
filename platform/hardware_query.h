#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace chimewerk {

/// What kind of machine this is. Main thread only.
class HardwareQuery {
public:
    virtual ~HardwareQuery() = default;

    /// The machine's integer property of this name; none when the machine does not have it.
    virtual std::optional<std::int32_t> integer(std::string_view name) const = 0;
};

/// Whether the lid-angle event can work on this machine.
inline bool queryIsAppleSilicon(const HardwareQuery& machine) {
    return machine.integer("hw.optional.arm64").value_or(0) != 0;
}

}  // namespace chimewerk
