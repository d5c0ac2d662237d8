#pragma once

#include <cstdint>
#include <string>

namespace chimewerk {

/// How often an event has been triggered, in words.
std::string counterText(std::int64_t triggerCount);

}  // namespace chimewerk
