// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

namespace chimewerk {

// Read anew at each call. Any thread. They may block while the kernel queries the device.

/// Returns the first line of a sysfs file, without its line end, or none if it cannot be read.
std::optional<std::string> readSysfsLine(const std::string& path);

/// Returns the number at the start of the file, or none if it does not start with a finite number.
std::optional<double> readSysfsNumber(const std::string& path);

}  // namespace chimewerk
