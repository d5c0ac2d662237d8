// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/base/sysfs.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "linux/base/file_reading.h"

namespace chimewerk {

namespace {

/// No value of the kernel is longer.
constexpr std::size_t kPage = 4096;

}  // namespace

std::optional<std::string> readSysfsLine(const std::string& path) {
    std::optional<std::string> text = readText(path, kPage);
    if (text) {
        text->resize(std::min(text->find('\n'), text->size()));
    }
    return text;
}

std::optional<double> readSysfsNumber(const std::string& path) {
    const std::optional<std::string> text = readText(path, kPage);
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
