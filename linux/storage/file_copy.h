// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string_view>
#include <system_error>

namespace chimewerk {

/// Writes all of `bytes` at the current position of an open file. On failure returns false and
/// sets errno.
bool writeAll(int file, std::string_view bytes);

/// Copies the rest of one open file to another and flushes it to the disk; shares blocks if
/// the file system can. Calls `goOn` every few megabytes; if it returns false, the copy ends
/// with `operation_canceled`.
std::error_code copyFile(int from, int to, const std::function<bool()>& goOn);

}  // namespace chimewerk
