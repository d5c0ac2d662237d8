#pragma once

#include <optional>
#include <string>

namespace chimewerk {

/// What the kernel tells in a small file of its sysfs, up to 4096 bytes, read anew at each call; none when it
/// cannot be read. Any thread. May wait where the kernel asks the device.
std::optional<std::string> readSysfs(const std::string& path);

/// The same without the end of its line.
std::optional<std::string> readSysfsLine(const std::string& path);

/// The number that the file begins with; none when it begins with none.
std::optional<double> readSysfsNumber(const std::string& path);

}  // namespace chimewerk
