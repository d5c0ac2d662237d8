// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/launches/app_unit.h"

#include <charconv>

namespace chimewerk {

namespace {

constexpr std::string_view kPrefix = "app-";
constexpr std::string_view kSnapPrefix = "snap.";
constexpr std::string_view kScope = ".scope";
constexpr std::string_view kService = ".service";
constexpr std::size_t kUuidLength = 36;

bool isSnap(std::string_view unitName) {
    return unitName.starts_with(kSnapPrefix) && unitName.ends_with(kScope) &&
           unitName.size() > kSnapPrefix.size() + kUuidLength + kScope.size() + 1;
}

/// Replaces \xNN by the character with that number.
std::string unescaped(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        std::size_t taken = 1;
        char character = text.front();
        if (text.starts_with("\\x") && text.size() >= 4) {
            unsigned char number = 0;
            if (std::from_chars(text.data() + 2, text.data() + 4, number, 16).ptr ==
                text.data() + 4) {
                character = static_cast<char>(number);
                taken = 4;
            }
        }
        plain += character;
        text.remove_prefix(taken);
    }
    return plain;
}

/// The entry of a snap's application is called <snap>_<application>.
AppUnit parseSnap(std::string_view name) {
    name.remove_prefix(kSnapPrefix.size());
    name.remove_suffix(kScope.size() + kUuidLength + 1);
    AppUnit unit{.launcher = "snap", .application = std::string(name)};
    if (const std::size_t dot = name.find('.'); dot != std::string_view::npos) {
        unit.application[dot] = '_';
    }
    return unit;
}

}  // namespace

bool AppUnit::isOne(std::string_view unitName) {
    return isSnap(unitName) || (unitName.starts_with(kPrefix) && !unitName.ends_with("@.service") &&
                                (unitName.ends_with(kScope) || unitName.ends_with(kService)));
}

AppUnit AppUnit::parse(std::string_view unitName) {
    if (isSnap(unitName)) {
        return parseSnap(unitName);
    }
    AppUnit unit;
    std::string_view name = unitName.substr(kPrefix.size());
    if (name.ends_with(kScope)) {
        name.remove_suffix(kScope.size());
        name = name.substr(0, name.rfind('-'));
    } else {
        name.remove_suffix(kService.size());
        const std::size_t at = name.find('@');
        unit.isOnlyInstance = at == std::string_view::npos;
        unit.autostarted = at != std::string_view::npos && name.substr(at) == "@autostart";
        name = name.substr(0, at);
    }
    if (const std::size_t hyphen = name.rfind('-'); hyphen != std::string_view::npos) {
        unit.launcher = unescaped(name.substr(0, hyphen));
        name.remove_prefix(hyphen + 1);
    }
    unit.application = unescaped(name);
    return unit;
}

ControlGroup ControlGroup::parse(std::string_view text) {
    ControlGroup group;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("/\n");
        const std::string_view name = text.substr(0, end);
        if (AppUnit::isOne(name)) {
            group.appUnit = name;
        }
        group.isPartOfSession |= name == "session.slice" || name == "background.slice";
        group.isOfBus |=
            name == "dbus.service" || name == "dbus-broker.service" || name.starts_with("dbus-:");
        if (name.ends_with(kScope) || name.ends_with(kService)) {
            group.isOfService = name.ends_with(kService) && !AppUnit::isOne(name);
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return group;
}

}  // namespace chimewerk
