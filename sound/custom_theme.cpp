// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sound/custom_theme.h"

#include <nlohmann/json.hpp>

#include "platform/byte_text.h"

namespace chimewerk {

namespace {

using nlohmann::json;

std::string text(const json& value) {
    return bytesFromText(value.get_ref<const std::string&>());
}

CustomTheme decoded(const json& theme) {
    ThemeSounds::Map sounds;
    for (const auto& [eventId, path] : theme.at("sounds").get_ref<const json::object_t&>()) {
        sounds.insert_or_assign(bytesFromText(eventId), text(path));
    }
    return {.id = text(theme.at("id")),
            .name = text(theme.at("name")),
            .sounds = ThemeSounds(std::move(sounds))};
}

}  // namespace

std::optional<std::string> CustomTheme::soundFor(std::string_view eventId) const {
    const auto entry = sounds.entries().find(eventId);
    if (entry == sounds.entries().end() || entry->second.empty()) {
        return std::nullopt;
    }
    return entry->second;
}

std::string encodeCustomThemes(const std::vector<CustomTheme>& themes) {
    // An empty list must become an empty array, not null.
    json list = json::array();
    for (const CustomTheme& theme : themes) {
        json sounds = json::object();
        for (const auto& [eventId, path] : theme.sounds.entries()) {
            sounds.emplace(textFromBytes(eventId), textFromBytes(path));
        }
        list.push_back({{"id", textFromBytes(theme.id)},
                        {"name", textFromBytes(theme.name)},
                        {"sounds", std::move(sounds)}});
    }
    return list.dump();
}

std::optional<std::vector<CustomTheme>> decodeCustomThemes(std::string_view text) {
    // The parser treats a NUL as the end of the text.
    if (text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    try {
        std::vector<CustomTheme> themes;
        const json list = json::parse(text);
        for (const json& theme : list.get_ref<const json::array_t&>()) {
            themes.push_back(decoded(theme));
        }
        return themes;
    } catch (const json::exception&) {
        return std::nullopt;
    }
}

}  // namespace chimewerk
