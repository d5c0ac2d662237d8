// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace chimewerk {

// A first stream or std::filesystem's first path costs memory for good: 300 KiB of tables and code.
// These do not. Any thread. They wait for the disk, or for the device that a file of the kernel
// describes, but never for a pipe.

/// A larger file is not one of settings or facts.
constexpr std::size_t kMostText = std::size_t{1} << 20;

/// Returns the first `most` bytes of a file, or none if it cannot be read.
std::optional<std::string> readText(const std::string& path, std::size_t most = kMostText);

/// Returns up to `most` bytes from the current position on, or none if they cannot be read.
std::optional<std::string> readText(int descriptor, std::size_t most);

/// Returns what a symbolic link holds; empty if there is no such link.
std::string readLink(const std::string& path);

/// Returns the names of all that is in a folder, without "." and ".."; none at all if it cannot be
/// read to its end.
std::vector<std::string> namesIn(const std::string& folder);

}  // namespace chimewerk
