// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/file_reading.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <memory>
#include <string_view>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

std::optional<std::string> readText(const std::string& path, std::size_t most) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return file ? readText(file.get(), most) : std::nullopt;
}

std::optional<std::string> readText(int descriptor, std::size_t most) {
    std::string text;
    std::array<char, 4096> part{};
    while (text.size() < most) {
        const ssize_t size =
            read(descriptor, part.data(), std::min(part.size(), most - text.size()));
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0) {
            return std::nullopt;
        }
        if (size == 0) {
            break;
        }
        text.append(part.data(), static_cast<std::size_t>(size));
    }
    return text;
}

std::string readLink(const std::string& path) {
    std::array<char, PATH_MAX> target{};
    const ssize_t size = readlink(path.c_str(), target.data(), target.size());
    return {target.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

std::vector<std::string> namesIn(const std::string& folder) {
    struct Close {
        void operator()(DIR* opened) const { closedir(opened); }
    };
    const std::unique_ptr<DIR, Close> opened(opendir(folder.c_str()));
    if (!opened) {
        return {};
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* const entry = readdir(opened.get())) {
        if (const std::string_view name = entry->d_name; name != "." && name != "..") {
            names.emplace_back(name);
        }
        errno = 0;
    }
    if (errno != 0) {
        names.clear();
    }
    return names;
}

}  // namespace chimewerk
