// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/sysfs_backlight_source.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "linux/base/sysfs.h"

namespace chimewerk {

namespace {

/// Returns the rank of this type of backlight, 0 for the preferred one; none for an unknown type.
std::optional<std::size_t> rankOf(std::string_view type) {
    static constexpr auto kTypes = std::to_array<std::string_view>({"firmware", "platform", "raw"});
    const auto* const found = std::ranges::find(kTypes, type);
    return found == kTypes.end() ? std::nullopt
                                 : std::optional(static_cast<std::size_t>(found - kTypes.begin()));
}

std::optional<float> readLevel(const std::string& backlight) {
    const std::optional<double> max = readSysfsNumber(backlight + "/max_brightness");
    if (!max || *max <= 0) {
        return std::nullopt;
    }
    // Not "actual_brightness": reading that asks the hardware, which may be slow.
    const std::optional<double> now = readSysfsNumber(backlight + "/brightness");
    if (!now) {
        return std::nullopt;
    }
    return static_cast<float>(std::clamp(*now / *max, 0.0, 1.0));
}

}  // namespace

std::optional<float> SysfsBacklightSource::brightness() {
    std::vector<std::pair<std::size_t, std::string>> backlights;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string path = entry->path().string();
        if (const auto rank = rankOf(readSysfsLine(path + "/type").value_or(""))) {
            backlights.emplace_back(*rank, path);
        }
    }
    std::ranges::sort(backlights);
    for (const auto& [rank, path] : backlights) {
        if (const auto level = readLevel(path)) {
            return level;
        }
    }
    return std::nullopt;
}

}  // namespace chimewerk
