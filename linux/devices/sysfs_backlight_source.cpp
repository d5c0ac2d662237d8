// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/devices/sysfs_backlight_source.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>

#include "linux/base/file_reading.h"
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

/// Returns whether the backlight belongs to a graphics output that is off.
bool isOfDarkOutput(const std::string& backlight) {
    return readSysfsLine(backlight + "/device/enabled") == "disabled";
}

}  // namespace

SysfsBacklightSource::SysfsBacklightSource(EpollMainQueue& queue, std::string folder,
                                           std::string udevControl)
    : folder_(std::move(folder)), udevControl_(std::move(udevControl)) {
    if (isUdevRunning()) {
        monitor_ = UdevMonitor::open(queue, {{.subsystem = "backlight", .deviceType = nullptr}},
                                     [this](std::span<const UdevEvent> /*events*/) { announce(); });
    }
}

bool SysfsBacklightSource::isUdevRunning() const {
    return access(udevControl_.c_str(), F_OK) == 0;
}

bool SysfsBacklightSource::announcesChanges() const {
    return monitor_ != nullptr && isUdevRunning();
}

std::vector<SysfsBacklightSource::Backlight> SysfsBacklightSource::readAll() const {
    std::vector<Backlight> all;
    for (const std::string& name : namesIn(folder_)) {
        const std::string path = folder_ + "/" + name;
        const auto rank = rankOf(readSysfsLine(path + "/type").value_or(""));
        const auto level = rank ? readLevel(path) : std::nullopt;
        if (level) {
            all.push_back(
                {.isDark = isOfDarkOutput(path), .rank = *rank, .path = path, .level = *level});
        }
    }
    std::ranges::sort(all, {},
                      [](const Backlight& b) { return std::tie(b.isDark, b.rank, b.path); });
    return all;
}

bool SysfsBacklightSource::hasChanged(const Backlight& backlight) const {
    const auto before = levels_.find(backlight.path);
    return before != levels_.end() && before->second != backlight.level;
}

/// Returns the backlight to follow. `all` must not be empty and begins with the preferred one.
const SysfsBacklightSource::Backlight& SysfsBacklightSource::choose(
    const std::vector<Backlight>& all) const {
    const auto current = std::ranges::find(all, current_, &Backlight::path);
    if (current == all.end() || current->isDark) {
        return all.front();
    }
    const auto changed = std::ranges::find_if(
        all, [this](const Backlight& b) { return !b.isDark && hasChanged(b); });
    return changed == all.end() || hasChanged(*current) ? *current : *changed;
}

std::optional<float> SysfsBacklightSource::brightness() {
    const std::vector<Backlight> all = readAll();
    if (all.empty()) {
        current_.clear();
        levels_.clear();
        return std::nullopt;
    }
    const Backlight& chosen = choose(all);
    if (chosen.path != current_) {
        const auto before = levels_.find(chosen.path);
        const float start = before == levels_.end() ? chosen.level : before->second;
        shift_ = current_.empty() ? 0 : told_ - start;
        current_ = chosen.path;
    }
    levels_.clear();
    for (const Backlight& backlight : all) {
        levels_[backlight.path] = backlight.level;
    }
    told_ = chosen.level + shift_;
    return told_;
}

SourceReport SysfsBacklightSource::report() {
    const auto level = levels_.find(current_);
    if (level == levels_.end()) {
        return {.mechanism = "no backlight",
                .missing = "No display here has a backlight that the kernel controls.",
                .lacksHardware = true};
    }
    return {.mechanism = current_.substr(current_.rfind('/') + 1) + ", " +
                         std::to_string(std::lround(level->second * 100)) + " %"};
}

}  // namespace chimewerk
