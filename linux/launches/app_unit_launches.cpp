// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/app_unit_launches.h"

namespace chimewerk {

namespace {

constexpr std::string_view kPrefix = "app-";
constexpr std::string_view kScope = ".scope";
constexpr std::string_view kService = ".service";

constexpr const char* kSandbox = "flatpak";
/// A sandbox starts within this time of its application.
constexpr std::chrono::seconds kSandboxDelay{5};

}  // namespace

bool AppUnit::isOne(std::string_view unitName) {
    return unitName.starts_with(kPrefix) && !unitName.ends_with("@.service") &&
           (unitName.ends_with(kScope) || unitName.ends_with(kService));
}

AppUnit AppUnit::parse(std::string_view unitName) {
    AppUnit unit;
    std::string_view name = unitName.substr(kPrefix.size());
    if (name.ends_with(kScope)) {
        name.remove_suffix(kScope.size());
        name = name.substr(0, name.rfind('-'));
    } else {
        name.remove_suffix(kService.size());
        const std::size_t at = name.find('@');
        unit.autostarted = at != std::string_view::npos && name.substr(at) == "@autostart";
        name = name.substr(0, at);
    }
    if (const std::size_t hyphen = name.rfind('-'); hyphen != std::string_view::npos) {
        unit.launcher = name.substr(0, hyphen);
        name.remove_prefix(hyphen + 1);
    }
    unit.application = name;
    return unit;
}

bool isInAppUnit(std::string_view cgroups) {
    while (!cgroups.empty()) {
        const std::size_t end = cgroups.find_first_of("/\n");
        if (AppUnit::isOne(cgroups.substr(0, end))) {
            return true;
        }
        cgroups.remove_prefix(end == std::string_view::npos ? cgroups.size() : end + 1);
    }
    return false;
}

void AppUnitLaunches::begin(Moment now) {
    begin_ = now;
    activeSince_.clear();
    last_ = {};
}

bool AppUnitLaunches::isLaunch(const std::string& unitName, Moment activeSince) {
    if (!AppUnit::isOne(unitName) || activeSince <= begin_) {
        return false;
    }
    Moment& known = activeSince_[unitName];
    if (known == activeSince) {
        return false;
    }
    known = activeSince;
    const AppUnit unit = AppUnit::parse(unitName);
    if (unit.autostarted) {
        return false;
    }
    const bool sandbox = unit.launcher == kSandbox && last_.launcher != kSandbox &&
                         unit.application == last_.application &&
                         activeSince - lastAt_ < kSandboxDelay;
    last_ = unit;
    lastAt_ = activeSince;
    return !sandbox;
}

}  // namespace chimewerk
