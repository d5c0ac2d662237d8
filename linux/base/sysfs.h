// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

namespace chimewerk {

/// Returns the first 4096 bytes of a sysfs file, read anew at each call, or none if it cannot be
/// read. Any thread. May block while the kernel queries the device.
std::optional<std::string> readSysfs(const std::string& path);

/// Like `readSysfs()`, but returns only the first line, without its line end.
std::optional<std::string> readSysfsLine(const std::string& path);

/// Returns the number at the start of the file, or none if it does not start with a finite number.
std::optional<double> readSysfsNumber(const std::string& path);

}  // namespace chimewerk
