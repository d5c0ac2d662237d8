#pragma once

#include <string>

namespace chimewerk {

/// A new random (version 4) UUID in canonical upper-case text, 36 characters. Any thread.
std::string randomUuid();

}  // namespace chimewerk
