// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/sysfs.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <system_error>

#include "linux/base/file_descriptor.h"

namespace chimewerk {

std::optional<std::string> readSysfs(const std::string& path) {
    // O_NONBLOCK in case the path names something other than a regular file.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        return std::nullopt;
    }
    std::array<char, 4096> buffer{};
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t size = read(file.get(), buffer.data() + filled, buffer.size() - filled);
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0) {
            return std::nullopt;
        }
        if (size == 0) {
            break;
        }
        filled += static_cast<std::size_t>(size);
    }
    return std::string(buffer.data(), filled);
}

std::optional<std::string> readSysfsLine(const std::string& path) {
    std::optional<std::string> text = readSysfs(path);
    if (text) {
        text->resize(std::min(text->find('\n'), text->size()));
    }
    return text;
}

std::optional<double> readSysfsNumber(const std::string& path) {
    const std::optional<std::string> text = readSysfs(path);
    if (!text) {
        return std::nullopt;
    }
    // Unlike streams and strtod(), from_chars uses a decimal point in every locale.
    double number = 0;
    const auto result = std::from_chars(text->data(), text->data() + text->size(), number);
    if (result.ec != std::errc{} || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

}  // namespace chimewerk
