#pragma once

#include <string>
#include <string_view>

namespace chimewerk {

/// The name without the spaces at both ends: every kind of space there is and tabs, but no line break. UTF-8;
/// bytes that are not stay as they are.
std::string trimmedThemeName(std::string_view name);

}  // namespace chimewerk
