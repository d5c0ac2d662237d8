// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

namespace chimewerk {

/// Returns the number of open descriptors of this process with `text` in their path or kind.
inline std::size_t openDescriptors(const std::string& text = "") {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closed;
        const std::string target = std::filesystem::read_symlink(entry, closed).string();
        count += !closed && target.find(text) != std::string::npos ? 1U : 0U;
    }
    return count;
}

}  // namespace chimewerk
