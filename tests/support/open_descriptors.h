#pragma once

#include <cstddef>
#include <filesystem>

namespace chimewerk {

/// How many descriptors this process has open.
inline std::size_t openDescriptors() {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        count += entry.is_symlink() ? 1U : 0U;
    }
    return count;
}

}  // namespace chimewerk
